// Delivered text as it is to look.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Ombe {

struct TextStyle {
  bool italic = false;
  bool bold = false;
  std::optional<std::uint32_t> colour = std::nullopt;  ///< 0xRRGGBB
  bool operator==(const TextStyle&) const = default;
};

struct Span {
  TextStyle style;
  std::string text;  ///< UTF-8 without anything that a terminal would act on
  bool operator==(const Span&) const = default;
};

/// Neighbouring spans differ in style, and none is empty.
using StyledLine = std::vector<Span>;

/// Reads the tags that subtitles carry: <i>, <b>, <font color="#RRGGBB"> and their ends, in either
/// case. A style ends with the text at the latest. Other tags, and ends of what was not begun, stay
/// in the text. Always gives at least one line.
std::vector<StyledLine> parseMarkup(std::string_view text);

}  // namespace Ombe
