// Delivered text as Pango markup.
#pragma once

#include <string>
#include <string_view>

#include "host/text/markup.h"

namespace Ombe {

/// Appends the text with its italics, bold and colours as Pango has them and everything else
/// escaped. What is appended is well-formed UTF-8 and well-formed markup, whatever the text.
void appendPangoMarkup(std::string_view text, ColorOrder order, std::string& out);

}  // namespace Ombe
