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

/// Copies the lines of a text that are not blank, and ends each: in SubRip and WebVTT a blank line
/// ends a subtitle, and what follows it would be lost. At a byte that is special, `take` appends in
/// its own way, and returns how many bytes of the rest it took, all of that line. Byte by byte,
/// since lines are short: std::string_view::find_first_of calls the C library for each of them.
template <typename IsSpecial, typename Take>
void appendShownLines(std::string& out, std::string_view text, IsSpecial isSpecial, Take take) {
  const auto isBlank = [](char c) { return c == ' ' || c == '\t' || c == '\v' || c == '\f'; };
  const auto isBreak = [](char c) { return c == '\r' || c == '\n'; };
  const auto stops = [&](char c) { return isBreak(c) || isSpecial(c); };
  const auto endsLine = [&] { return text.empty() || isBreak(text[0]); };
  const auto skipTo = [&](auto at) { text = {at, text.end()}; };
  while (!text.empty()) {
    const auto shown = std::find_if_not(text.begin(), text.end(), isBlank);
    if (shown == text.end() || isBreak(*shown)) skipTo(shown);
    const bool isShown = !endsLine();
    while (!endsLine()) {
      const auto stop = std::find_if(text.begin(), text.end(), stops);
      out.append(text.begin(), stop);
      skipTo(stop);
      if (!endsLine()) text.remove_prefix(take(text));
    }
    if (isShown) out += '\n';
    if (!text.empty()) text.remove_prefix(1);
  }
}

}  // namespace Ombe
