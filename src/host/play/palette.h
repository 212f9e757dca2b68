// Colours and styles as terminals understand them.
#pragma once

#include <string>

#include "host/io/color_choice.h"
#include "host/text/markup.h"

namespace Ombe {

/// Appends the text in its style and goes back to the plain style; colours become the nearest that
/// there is.
void appendStyled(std::string& out, const Span& span, ColorDepth depth);

}  // namespace Ombe
