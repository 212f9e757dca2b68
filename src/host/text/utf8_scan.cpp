#include "host/text/utf8_scan.h"

#include <unicode/utf8.h>

#include <cstring>

namespace Ombe {
namespace {

/// How many bytes a text begins with that are ASCII. Most texts are little else, so it looks at
/// eight at a time.
std::size_t asciiLength(std::string_view text) {
  std::size_t at = 0;
  for (std::uint64_t bytes = 0; text.size() - at >= sizeof bytes; at += sizeof bytes) {
    std::memcpy(&bytes, text.data() + at, sizeof bytes);
    if ((bytes & 0x8080808080808080) != 0) break;
  }
  while (at < text.size() && static_cast<unsigned char>(text[at]) < 0x80) ++at;
  return at;
}

}  // namespace

Utf8Piece nextUtf8Piece(std::string_view text) {
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  std::size_t length = 0;
  UChar32 character = 0;
  U8_NEXT(bytes, length, text.size(), character);
  return {length, character};
}

bool isUtf8(std::string_view text) {
  for (;;) {
    text.remove_prefix(asciiLength(text));
    if (text.empty()) return true;
    const Utf8Piece piece = nextUtf8Piece(text);
    if (!piece.wellFormed()) return false;
    text.remove_prefix(piece.length);
  }
}

bool isAscii(std::string_view text) { return asciiLength(text) == text.size(); }

}  // namespace Ombe
