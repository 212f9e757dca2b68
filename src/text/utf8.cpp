#include "text/utf8.h"

namespace Ombe {
namespace {

/// Bytes that a first byte announces, up to 6: also by first bytes that begin no character.
std::size_t announcedLength(unsigned char first) {
  if (first < 0xC0) return 1;
  if (first < 0xE0) return 2;
  if (first < 0xF0) return 3;
  if (first < 0xF8) return 4;
  return first < 0xFC ? 5 : 6;
}

/// The narrower range that some first bytes leave to the second one.
bool allowsSecond(unsigned char first, unsigned char second) {
  switch (first) {
    case 0xE0:
      return second >= 0xA0;  // else overlong
    case 0xED:
      return second <= 0x9F;  // else a surrogate
    case 0xF0:
      return second >= 0x90;  // else overlong
    case 0xF4:
      return second <= 0x8F;  // else beyond U+10FFFF
    default:
      return true;
  }
}

/// Whether exactly these bytes are one character; `length` is the announced one.
bool isCharacter(const unsigned char* bytes, std::size_t length) {
  if (length == 1) return bytes[0] < 0x80;
  if (bytes[0] < 0xC2 || bytes[0] > 0xF4) return false;
  for (std::size_t i = 1; i < length; ++i) {
    if ((bytes[i] & 0xC0) != 0x80) return false;
  }
  return allowsSecond(bytes[0], bytes[1]);
}

}  // namespace

bool isWellFormedUtf8(std::string_view text) {
  const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = announcedLength(bytes[at]);
    if (length > text.size() - at || !isCharacter(bytes + at, length)) return false;
    at += length;
  }
  return true;
}

bool isWellFormedUtf8Sequence(const unsigned char* start, const unsigned char* bound) {
  if (start == nullptr || start >= bound) return false;
  const std::size_t length = announcedLength(*start);
  return length <= static_cast<std::size_t>(bound - start) && isCharacter(start, length);
}

}  // namespace Ombe
