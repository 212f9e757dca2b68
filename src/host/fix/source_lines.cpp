#include "host/fix/source_lines.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace Ombe {
namespace {

bool isControl(char c) {
  constexpr char kDelete = 0x7F;
  return (static_cast<unsigned char>(c) < ' ' && c != '\t') || c == kDelete;
}

bool isBlank(std::string_view text) {
  while (const std::size_t length = blankLength(text)) text.remove_prefix(length);
  return text.empty();
}

/// Length of the line end that a text begins with.
std::size_t lineEndLength(std::string_view text) {
  if (text.starts_with("\r\n")) return 2;
  return text.starts_with("\r\r\n") ? 3 : 1;
}

}  // namespace

bool holdsControls(std::string_view text) {
  return std::any_of(text.begin(), text.end(), isControl);
}

std::size_t blankLength(std::string_view text) {
  using std::string_view_literals::operator""sv;
  constexpr std::string_view kBlanks[] = {" "sv, "\t"sv, "\v"sv, "\f"sv, "\u00A0"sv, "\uFEFF"sv};
  for (const std::string_view blank : kBlanks) {
    if (text.starts_with(blank)) return blank.size();
  }
  return 0;
}

SourceLines::SourceLines(std::string text, Controls controls) : text_(std::move(text)) {
  usualGap_ = std::numeric_limits<std::size_t>::max();
  std::size_t begin = 0;
  while (begin < text_.size()) {
    const std::size_t end = std::min(text_.find_first_of("\r\n", begin), text_.size());
    const std::size_t length = lineEndLength(std::string_view(text_).substr(end));
    add(begin, end, controls);
    if (length == 3) ++number_;  // editors see two ends
    begin = end + length;
  }
}

void SourceLines::add(std::size_t begin, std::size_t end, Controls controls) {
  ++number_;
  bool hadControls = false;
  if (controls == Controls::kRemove) {
    const auto first = text_.begin() + static_cast<std::ptrdiff_t>(begin);
    const auto last = text_.begin() + static_cast<std::ptrdiff_t>(end);
    const auto kept = std::remove_if(first, last, isControl);
    hadControls = kept != last;
    end = static_cast<std::size_t>(kept - text_.begin());
  }
  if (end < text_.size()) text_[end] = '\0';
  const std::string_view line = std::string_view(text_).substr(begin, end - begin);
  if (isBlank(line)) {
    ++gap_;
    if (hadControls || !line.empty()) blankLines_.push_back({number_, hadControls});
    return;
  }
  if (!lines_.empty()) usualGap_ = std::min(usualGap_, gap_);
  lines_.push_back({line, number_, gap_, hadControls});
  gap_ = 0;
}

}  // namespace Ombe
