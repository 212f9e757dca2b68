#include "host/text/markup.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "host/text/visible_text.h"

namespace Ombe {
namespace {

char lowered(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool startsWith(std::string_view text, std::string_view lowerCase) {
  return std::ranges::equal(text.substr(0, lowerCase.size()), lowerCase, {}, lowered);
}

/// The six digits behind a "#"; nothing for another colour.
std::optional<Color> findColor(std::string_view attributes, ColorOrder order) {
  const std::string_view digits =
      attributes.substr(std::min(attributes.find('#'), attributes.size() - 1) + 1, 6);
  Color color = 0;
  const char* end = digits.data() + digits.size();
  if (digits.size() < 6 || std::from_chars(digits.data(), end, color, 16).ptr != end) {
    return std::nullopt;
  }
  if (order == ColorOrder::kRgb) return color;
  return (color & 0xFF) << 16 | (color & 0xFF00) | color >> 16;
}

std::optional<Tag::Kind> kindOf(std::string_view name, bool closes) {
  if (startsWith(name, closes ? "font>" : "font ")) return Tag::Kind::kFont;
  if (startsWith(name, "i>")) return Tag::Kind::kItalic;
  if (startsWith(name, "b>")) return Tag::Kind::kBold;
  if (startsWith(name, "u>")) return Tag::Kind::kUnderline;
  return std::nullopt;
}

}  // namespace

std::optional<Tag> readTag(std::string_view text, ColorOrder order) {
  constexpr std::size_t kLongestTag =
      100;  // bytes, so that a text of many "<" costs what it should
  const std::size_t length = text.substr(0, kLongestTag).find('>') + 1;
  if (!text.starts_with('<') || length == 0) return std::nullopt;
  const bool closes = text[1] == '/';
  const std::string_view name = text.substr(closes ? 2 : 1, length - (closes ? 2 : 1));
  const auto kind = kindOf(name, closes);
  // Another begins inside, or the line ends.
  const bool isUnfinished = name.find_first_of("<\r\n") != std::string_view::npos;
  if (!kind || isUnfinished) return std::nullopt;
  const bool hasColor = kind == Tag::Kind::kFont && !closes;
  return Tag{*kind, closes, hasColor ? findColor(name, order) : std::nullopt, length};
}

bool OpenTags::take(const Tag& tag) {
  std::size_t& count = counts_[static_cast<std::size_t>(tag.kind)];
  if (tag.closes && count == 0) return false;
  tag.closes ? --count : ++count;
  if (tag.kind == Tag::Kind::kFont) {
    tag.closes ? colors_.pop_back() : colors_.push_back(tag.color);
  }
  return true;
}

TextStyle OpenTags::style() const {
  const auto isOpen = [this](Tag::Kind kind) {
    return counts_[static_cast<std::size_t>(kind)] != 0;
  };
  return {isOpen(Tag::Kind::kItalic), isOpen(Tag::Kind::kBold),
          colors_.empty() ? std::nullopt : colors_.back()};
}

void appendSpan(StyledLine& line, const TextStyle& style, std::string_view text) {
  if (text.empty()) return;
  if (line.empty() || line.back().style != style) line.push_back({style, {}});
  line.back().text += text;
}

std::vector<StyledLine> parseMarkup(std::string_view text, ColorOrder order) {
  std::vector<StyledLine> lines(1);
  OpenTags open;
  for (std::size_t taken = 1; !text.empty(); text.remove_prefix(std::exchange(taken, 1))) {
    const auto tag = readTag(text, order);
    if (text[0] == '\n') {
      lines.emplace_back();
    } else if (tag && tag->kind != Tag::Kind::kUnderline && open.take(*tag)) {
      taken = tag->length;
    } else if (!text.starts_with("\r\n")) {
      taken = std::min(text.find_first_of("<\r\n", 1), text.size());
      std::string visible = visibleText(text.substr(0, taken));
      std::replace(visible.begin(), visible.end(), '\t', ' ');
      appendSpan(lines.back(), open.style(), visible);
    }
  }
  return lines;
}

}  // namespace Ombe
