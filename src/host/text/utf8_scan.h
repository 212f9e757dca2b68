// Telling UTF-8 from other bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Ombe {

/// What stands at the start of a text: a character, or bytes that a decoder replaces by one U+FFFD
/// (the longest start of a character that cannot go on, else a single byte).
struct Utf8Piece {
  std::size_t length;
  std::int32_t codePoint;  ///< negative for bytes that are no character
  [[nodiscard]] bool wellFormed() const { return codePoint >= 0; }
};

/// The text must not be empty.
Utf8Piece nextUtf8Piece(std::string_view text);

bool isUtf8(std::string_view text);
bool isAscii(std::string_view text);

}  // namespace Ombe
