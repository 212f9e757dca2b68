// The lines of a subtitle as the export formats write them.
#pragma once

#include <algorithm>
#include <string_view>

namespace Ombe {

/// Calls `show` with each line of the text that is not blank, without its line break. Byte by byte,
/// since lines are short: std::string_view::find_first_of calls the C library for each of them.
template <typename Show>
void forEachShownLine(std::string_view text, Show show) {
  const auto isBreak = [](char c) { return c == '\r' || c == '\n'; };
  const auto isBlank = [](char c) { return c == ' ' || c == '\t' || c == '\v' || c == '\f'; };
  for (auto start = text.begin(); start != text.end();) {
    const auto end = std::find_if(start, text.end(), isBreak);
    if (!std::all_of(start, end, isBlank)) show(std::string_view(start, end));
    start = end == text.end() ? end : end + 1;
  }
}

}  // namespace Ombe
