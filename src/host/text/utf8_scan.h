// Telling UTF-8 from other bytes.
#pragma once

#include <cstddef>
#include <string_view>

namespace Ombe {

/// What stands at the start of a text: a well-formed character, or bytes that a decoder replaces by
/// one U+FFFD (the longest start of a character that cannot go on, else a single byte).
struct Utf8Piece {
  std::size_t length;
  bool wellFormed;
};

/// Of a text that is not empty.
Utf8Piece nextUtf8Piece(std::string_view text);

bool isUtf8(std::string_view text);

}  // namespace Ombe
