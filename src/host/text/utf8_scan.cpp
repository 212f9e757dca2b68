#include "host/text/utf8_scan.h"

#include <unicode/utf8.h>

#include <algorithm>

namespace Ombe {

Utf8Piece nextUtf8Piece(std::string_view text) {
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  std::size_t length = 0;
  UChar32 character = 0;
  U8_NEXT(bytes, length, text.size(), character);
  return {length, character};
}

bool isUtf8(std::string_view text) {
  while (!text.empty()) {
    const Utf8Piece piece = nextUtf8Piece(text);
    if (!piece.wellFormed()) return false;
    text.remove_prefix(piece.length);
  }
  return true;
}

bool isAscii(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

}  // namespace Ombe
