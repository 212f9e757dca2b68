#include "host/text/markup.h"

#include <algorithm>
#include <charconv>

#include "host/text/visible_text.h"

namespace Ombe {
namespace {

constexpr std::string_view kFontStart = "<font color=\"#";
constexpr std::size_t kColourDigits = 6;

char lowered(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool startsWith(std::string_view text, std::string_view lowerCase) {
  return text.size() >= lowerCase.size() &&
         std::equal(lowerCase.begin(), lowerCase.end(), text.begin(),
                    [](char expected, char c) { return expected == lowered(c); });
}

/// Nothing for six characters that are no colour.
std::optional<std::uint32_t> parseColour(std::string_view digits) {
  std::uint32_t colour = 0;
  const char* end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, colour, 16);
  if (error != std::errc() || stop != end) return std::nullopt;
  return colour;
}

class MarkupParser {
 public:
  std::vector<StyledLine> parse(std::string_view text) {
    while (!text.empty()) text.remove_prefix(takePiece(text));
    return std::move(lines_);
  }

 private:
  /// Returns how many bytes it took.
  std::size_t takePiece(std::string_view text) {
    if (text[0] == '\n') {
      lines_.emplace_back();
      return 1;
    }
    if (text.substr(0, 2) == "\r\n") return 1;
    if (text[0] == '<') {
      const std::size_t length = takeTag(text);
      if (length != 0) return length;
    }
    const std::size_t end = std::min(text.find_first_of("<\r\n", 1), text.size());
    append(text.substr(0, end));
    return end;
  }

  /// 0 when it is none that counts.
  std::size_t takeTag(std::string_view text) {
    for (const std::string_view tag : {"<i>", "<b>"}) {
      if (startsWith(text, tag)) {
        ++depthOf(tag[1]);
        return tag.size();
      }
    }
    for (const std::string_view tag : {"</i>", "</b>"}) {
      if (startsWith(text, tag) && depthOf(tag[2]) > 0) {
        --depthOf(tag[2]);
        return tag.size();
      }
    }
    return takeFont(text);
  }

  std::size_t takeFont(std::string_view text) {
    constexpr std::string_view kFontEnd = "</font>";
    if (startsWith(text, kFontEnd) && !colours_.empty()) {
      colours_.pop_back();
      return kFontEnd.size();
    }
    constexpr std::size_t kBehindColour = kFontStart.size() + kColourDigits;
    if (!startsWith(text, kFontStart) || text.size() < kBehindColour ||
        text.substr(kBehindColour, 2) != "\">") {
      return 0;
    }
    colours_.push_back(parseColour(text.substr(kFontStart.size(), kColourDigits)));
    return kBehindColour + 2;
  }

  int& depthOf(char letter) { return letter == 'i' ? italic_ : bold_; }

  void append(std::string_view text) {
    const TextStyle style{italic_ > 0, bold_ > 0,
                          colours_.empty() ? std::nullopt : colours_.back()};
    StyledLine& line = lines_.back();
    if (line.empty() || line.back().style != style) line.push_back({style, {}});
    std::string visible = visibleText(text);
    std::replace(visible.begin(), visible.end(), '\t', ' ');
    line.back().text += visible;
  }

  std::vector<StyledLine> lines_{1};
  int italic_ = 0;
  int bold_ = 0;
  std::vector<std::optional<std::uint32_t>> colours_;
};

}  // namespace

std::vector<StyledLine> parseMarkup(std::string_view text) { return MarkupParser().parse(text); }

}  // namespace Ombe
