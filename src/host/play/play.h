// Playing to somebody who watches.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/play/palette.h"
#include "host/play/tuning.h"
#include "host/session/session.h"

namespace Ombe {

struct PlayOptions {
  std::uint32_t start = 0;    ///< milliseconds
  std::int32_t speed = 1000;  ///< thousandths of the normal speed
  bool printsLines = false;   ///< also on a terminal
  ColorOrder colorOrder = ColorOrder::kRgb;
  std::vector<std::string> likelyCodePages = {};  ///< guesses, to be offered
  OwnRate fileRate = {};                          ///< that holds unless one is chosen
};

/// On the terminal, with keys, until somebody quits. Returns the signal that ended it, to be acted
/// upon when everything is let go; 0 when there was none.
int playOnTerminal(Session& session, const PlayOptions& options, ColorDepth depth);

/// Writes a line to standard output whenever a subtitle begins, until the last has ended.
void playAsLines(Session& session, const PlayOptions& options, ColorDepth depth);

}  // namespace Ombe
