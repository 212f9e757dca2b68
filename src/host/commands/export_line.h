// What was found while watching, as a command.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "host/check/fitted_times.h"
#include "host/session/session.h"
#include "host/text/markup.h"

namespace Ombe {

/// What of a session changes while it plays.
struct Found {
  FrameRate rate;        ///< unset for the file's
  std::string codePage;  ///< empty for none, and for one that a signature names
  std::int32_t offsetMs = 0;

  static Found of(Session& session);
  bool operator==(const Found&) const = default;
};

/// What it was played with.
struct Played {
  std::string file;
  SessionOptions session;
  ColorOrder colorOrder = ColorOrder::kRgb;
  std::optional<FileRate> fileRate;  ///< none where times are no frames
};

/// "ombe export FILE ..." in words that a shell takes as they are meant, of ASCII alone where they
/// would act on a terminal, and a line end.
std::string exportLine(const Played& played, const Found& found);

}  // namespace Ombe
