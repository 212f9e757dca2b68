// Whether output is coloured, and how many colours there are.
#pragma once

#include <string_view>

namespace Ombe {

enum class ColorMode { kAuto, kAlways, kNever };

/// From nothing but the text, over bold and italics alone, to all colours.
enum class ColorDepth { kNoStyle, kNoColor, k16, k256, kTrue };

/// Whether escape sequences may be written to the descriptor. With kAuto they may when it is a
/// terminal that knows them and the environment does not forbid them (NO_COLOR, TERM=dumb).
bool wantsColor(ColorMode mode, int descriptor);

/// What a terminal can show by its COLORTERM and TERM, which may be empty.
ColorDepth terminalColorDepth(std::string_view colorTerm, std::string_view term);

}  // namespace Ombe
