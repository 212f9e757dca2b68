// The formats that makeWriter chooses from.
#pragma once

#include <algorithm>
#include <memory>
#include <string_view>

#include "host/writers/subtitle_writer.h"

namespace Ombe {

/// Index, times, text, blank line, numbered from 1. Tags are written as players read them. Bytes
/// that are no UTF-8 stay as they are.
std::unique_ptr<SubtitleWriter> makeSrtWriter(const WriterOptions& options);

/// Cues without numbers, texts in UTF-8 with their markup as WebVTT has it: <i>, <b>, <u>, and
/// colours as classes.
std::unique_ptr<SubtitleWriter> makeVttWriter(const WriterOptions& options);

/// {"timestamp": 1000, "duration": 1000, "text": "Hello"} a line, in UTF-8; bytes that are not
/// become U+FFFD. Holds everything that was delivered.
std::unique_ptr<SubtitleWriter> makeJsonlWriter(const WriterOptions& options);

/// Calls `show` with each line of a text that is not blank, without its line break: in SubRip and
/// WebVTT a blank line ends a subtitle, and what follows it would be lost. Byte by byte, since
/// lines are short: std::string_view::find_first_of calls the C library for each of them.
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

/// Copies the line and ends it. At a byte that is special, `take` appends in its own way, and
/// returns how many bytes of the rest it took.
template <typename IsSpecial, typename Take>
void appendLine(std::string& out, std::string_view line, IsSpecial isSpecial, Take take) {
  while (!line.empty()) {
    const auto stop = std::find_if(line.begin(), line.end(), isSpecial);
    out.append(line.begin(), stop);
    line.remove_prefix(static_cast<std::size_t>(stop - line.begin()));
    if (!line.empty()) line.remove_prefix(take(line));
  }
  out += '\n';
}

}  // namespace Ombe
