#include "host/text/visible_text.h"

#include <algorithm>
#include <cstdint>

#include "host/text/utf8_scan.h"

namespace Ombe {
namespace {

constexpr std::string_view kReplacement = "\uFFFD";

bool isControl(char c) { return static_cast<unsigned char>(c) < ' ' || c == 0x7F; }

void appendControlPicture(std::string& out, char control) {
  constexpr char kDelete = 0x7F;
  out += "\xE2\x90";  // U+2400 to U+241F show the controls in order, U+2421 shows DEL
  out += control == kDelete ? '\xA1' : static_cast<char>(0x80 + control);
}

/// Characters of several bytes that act instead of showing: C1 controls, marks, embeddings and
/// isolates of the writing direction, separators of lines and paragraphs.
bool acts(std::int32_t code) {
  return (code >= 0x80 && code < 0xA0) || code == 0x061C || code == 0x200E || code == 0x200F ||
         (code >= 0x2028 && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

void appendEscape(std::string& out, std::int32_t code) {
  out += "\\u";
  for (int shift = 12; shift >= 0; shift -= 4) out += "0123456789ABCDEF"[code >> shift & 0xF];
}

std::string visible(std::string_view text, std::string_view kept) {
  std::string out;
  while (!text.empty()) {
    const Utf8Piece piece = nextUtf8Piece(text);
    const std::string_view character = text.substr(0, piece.length);
    text.remove_prefix(piece.length);
    if (!piece.wellFormed()) {
      out += kReplacement;
    } else if (isControl(character[0]) && kept.find(character[0]) == std::string_view::npos) {
      appendControlPicture(out, character[0]);
    } else if (acts(piece.codePoint)) {
      appendEscape(out, piece.codePoint);
    } else {
      out += character;
    }
  }
  return out;
}

}  // namespace

std::string visibleText(std::string_view text) { return visible(text, "\n\t"); }
std::string visibleLine(std::string_view text) { return visible(text, "\t"); }

std::string escaped(std::string_view text, std::initializer_list<Escape> escapes) {
  std::string out;
  for (const char c : text) {
    const auto* found = std::ranges::find(escapes, c, &Escape::character);
    found == escapes.end() ? out += c : out += found->words;
  }
  return out;
}

}  // namespace Ombe
