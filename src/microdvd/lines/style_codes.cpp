#include "microdvd/lines/style_codes.h"

#include <algorithm>

namespace Ombe {
namespace {

constexpr std::size_t kFirstLetter = 3;     // behind "{y:"
constexpr std::size_t kLastStyleBrace = 5;  // a style code holds two letters at most
constexpr std::size_t kColourBrace = 10;    // behind "{c:$" and six characters
constexpr std::size_t kFirstColourCharacter = 4;

char lowered(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

StyledText unchanged(std::string_view text) { return {{}, text, {}}; }

void wrap(StyledText& styled, std::string_view opening, std::string_view closing) {
  styled.opening.prepend(opening);
  styled.closing.append(closing);
}

/// {y:...}: each letter wraps what the ones before it made; letters that mean nothing add nothing.
StyledText translateStyle(std::string_view text) {
  const std::size_t brace = text.find('}');
  if (brace == std::string_view::npos || brace > kLastStyleBrace) return unchanged(text);
  StyledText styled = unchanged(text.substr(brace + 1));
  for (const char letter : text.substr(kFirstLetter, brace - kFirstLetter)) {
    if (lowered(letter) == 'i') wrap(styled, "<i>", "</i>");
    if (lowered(letter) == 'b') wrap(styled, "<b>", "</B>");  // always a capital
  }
  return styled;
}

/// {c:$RRGGBB}: the six characters are taken over as they stand.
StyledText translateColour(std::string_view text) {
  const bool hasSign = text.size() > 3 && (text[3] == '$' || text[3] == '#');
  if (!hasSign || text.find('}') != kColourBrace) return unchanged(text);
  StyledText styled = unchanged(text.substr(kColourBrace + 1));
  styled.opening.append("<font color=\"#");
  styled.opening.append(text.substr(kFirstColourCharacter, 6));
  styled.opening.append("\">");
  styled.closing.append("</font>");
  return styled;
}

}  // namespace

void Markup::append(std::string_view text) {
  std::copy(text.begin(), text.end(), bytes_.begin() + static_cast<std::ptrdiff_t>(size_));
  size_ += text.size();
}

void Markup::prepend(std::string_view text) {
  std::copy_backward(bytes_.begin(), bytes_.begin() + static_cast<std::ptrdiff_t>(size_),
                     bytes_.begin() + static_cast<std::ptrdiff_t>(size_ + text.size()));
  std::copy(text.begin(), text.end(), bytes_.begin());
  size_ += text.size();
}

void StyledText::copyTo(char* out) const {
  for (const std::string_view piece : {opening.text(), body, closing.text()}) {
    out = std::copy(piece.begin(), piece.end(), out);
  }
}

std::string StyledText::str() const {
  std::string result(size(), '\0');
  copyTo(result.data());
  return result;
}

StyledText translateStyleCodes(std::string_view text) {
  if (text.empty()) return unchanged(text);
  if (text[0] == '/' || text[0] == '\\') {
    StyledText styled = unchanged(text.substr(1));
    wrap(styled, "<i>", "</i>");
    return styled;
  }
  if (text.size() >= 3 && text[0] == '{' && text[2] == ':') {
    if (lowered(text[1]) == 'y') return translateStyle(text);
    if (lowered(text[1]) == 'c') return translateColour(text);
  }
  return unchanged(text);
}

}  // namespace Ombe
