// A picture of the player for a terminal.
#pragma once

#include <string>
#include <vector>

#include "host/play/palette.h"

namespace Ombe {

struct ScreenSize {
  int rows;
  int columns;
  bool operator==(const ScreenSize&) const = default;
};

/// What is to be seen.
struct Frame {
  std::vector<StyledLine> captions;
  std::string message;  ///< above the status; may be empty
  std::string status;   ///< last row
};

/// The escape sequences that draw a frame over whatever stood there, every row of it: subtitles
/// centred above the message, and the status in reverse at the bottom. Where rows lack, the lowest
/// are drawn. Texts must be free of control characters.
std::string drawFrame(const Frame& frame, ScreenSize size, ColorDepth depth);

}  // namespace Ombe
