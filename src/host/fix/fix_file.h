// One file mended.
#pragma once

#include <string>

#include "host/fix/repair.h"
#include "host/session/session.h"

namespace Ombe {

struct FixOptions {
  SessionOptions session = {};
  bool thorough = false;  ///< as for repair()
};

struct FixedText {
  std::string codePage;    ///< that the file was in
  bool isLossy = false;    ///< bytes that are no characters of it became U+FFFD
  bool isAsItWas = false;  ///< byte for byte what the file held
  Repair repair;           ///< with at least one line
};

/// Reads and mends the file at `path`. A frame rate among the options becomes its header; its parts
/// are below 2^31. Throws Failure when it cannot be read, when its code page is
/// not known, and when it seems to be something else.
FixedText fixFile(const std::string& path, const FixOptions& options);

}  // namespace Ombe
