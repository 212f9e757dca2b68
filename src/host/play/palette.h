// Colours and styles as terminals understand them.
#pragma once

#include <string>
#include <string_view>

#include "host/text/markup.h"

namespace Ombe {

/// From nothing but the text, over bold and italics alone, to all colours.
enum class ColorDepth { kNoStyle, kNoColor, k16, k256, kTrue };

/// What a terminal can show by its COLORTERM and TERM, which may be empty.
ColorDepth terminalColorDepth(std::string_view colorTerm, std::string_view term);

/// Appends the text in its style and goes back to the plain style; colours become the nearest that
/// there is.
void appendStyled(std::string& out, const Span& span, ColorDepth depth);

}  // namespace Ombe
