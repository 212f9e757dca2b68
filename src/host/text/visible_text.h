// Texts that come from outside, made fit for a terminal.
#pragma once

#include <string>
#include <string_view>

namespace Ombe {

/// Appends `text` so that a terminal only ever shows it: control characters become their pictures
/// (ESC is "␛"), C1 controls and overrides of the writing direction become "\u009B" and the like,
/// and bytes that are no UTF-8 become U+FFFD. Line feeds and tabs stay. The result is UTF-8.
void appendVisible(std::string& out, std::string_view text);

std::string visibleText(std::string_view text);

}  // namespace Ombe
