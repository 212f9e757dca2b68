#include "host/text/visible_text.h"

#include "host/text/utf8_scan.h"

namespace Ombe {
namespace {

constexpr std::string_view kReplacement = "\uFFFD";

bool isPlain(char c) { return (c >= ' ' && c <= '~') || c == '\n' || c == '\t'; }

void appendControlPicture(std::string& out, char control) {
  constexpr char kDelete = 0x7F;
  out += "\xE2\x90";  // U+2400 to U+241F show the controls in order, U+2421 shows DEL
  out += control == kDelete ? '\xA1' : static_cast<char>(0x80 + control);
}

/// How a character of several bytes that acts instead of showing is written; empty for all others.
std::string_view escapeOf(std::string_view character) {
  if (character == "\u202D") return "\\u202D";
  if (character == "\u202E") return "\\u202E";
  return {};
}

bool isC1(std::string_view character) {
  return character.size() == 2 && character[0] == '\xC2' &&
         static_cast<unsigned char>(character[1]) < 0xA0;
}

void appendC1(std::string& out, std::string_view character) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  const auto code = static_cast<unsigned char>(character[1]);
  out.append("\\u00") += kDigits[code >> 4];
  out += kDigits[code & 0xF];
}

}  // namespace

void appendVisible(std::string& out, std::string_view text) {
  while (!text.empty()) {
    const Utf8Piece piece = nextUtf8Piece(text);
    const std::string_view character = text.substr(0, piece.length);
    text.remove_prefix(piece.length);
    if (!piece.wellFormed) {
      out += kReplacement;
    } else if (piece.length == 1 && !isPlain(character[0])) {
      appendControlPicture(out, character[0]);
    } else if (isC1(character)) {
      appendC1(out, character);
    } else {
      const std::string_view escape = escapeOf(character);
      out += escape.empty() ? character : escape;
    }
  }
}

std::string visibleText(std::string_view text) {
  std::string out;
  appendVisible(out, text);
  return out;
}

}  // namespace Ombe
