// How much room text takes on a terminal.
#pragma once

#include <vector>

#include "host/text/markup.h"

namespace Ombe {

/// Cells that a text of whole UTF-8 characters takes: none for combining marks, two for the wide
/// characters of East Asian scripts and for pictures.
int cellCount(std::string_view text);
int cellCount(const StyledLine& line);

/// Breaks a line that is wider than `columns` between words, or where it must within one.
std::vector<StyledLine> wrapLine(const StyledLine& line, int columns);

/// The start of `text` that fits into `columns`.
std::string_view clipText(std::string_view text, int columns);

}  // namespace Ombe
