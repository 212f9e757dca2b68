// One file mended, and put in its own place.
#pragma once

#include <optional>
#include <string>

#include "host/fix/repair.h"
#include "host/session/session.h"
#include "host/session/sync.h"

namespace Ombe {

struct FixOptions {
  SessionOptions session = {};
  bool thorough = false;  ///< as for repair()
  FilmTimes times = {};
};

struct FixedText {
  std::string codePage;                       ///< that the file was in
  std::optional<CodePageChoice> choice = {};  ///< how it was chosen, if that was asked for
  bool isLossy = false;                       ///< bytes that are no characters of it became U+FFFD
  bool isAsItWas = false;                     ///< byte for byte what the file held
  Repair repair;                              ///< with at least one line
  std::optional<Retiming> retiming = std::nullopt;  ///< that it went through
};

/// Reads and mends the file at `path`. A frame rate among the options becomes its header; its parts
/// are below 2^31. Points of which there is nothing to object become its header and move its frame
/// numbers, by whole frames. Throws Failure when it cannot be read, when its code page is not
/// known, when it seems to be something else, and when the points cannot be met.
FixedText fixFile(const std::string& path, const FixOptions& options);

/// Keeps the file as NAME.orig and puts the text in its place. Throws Failure, also where there is
/// such a file already.
void replaceFile(const std::string& file, const std::string& text);

}  // namespace Ombe
