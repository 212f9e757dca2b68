#include "text/utf8.h"

#include <unicode/utf8.h>

#include <iterator>

namespace Ombe {
namespace {

/// Whether a well-formed character stands at `at` and ends by `end`; moves `at` behind it.
bool skipCharacter(const std::uint8_t* bytes, std::ptrdiff_t& at, std::ptrdiff_t end) {
  UChar32 character = 0;
  U8_NEXT(bytes, at, end, character);
  return character >= 0;
}

}  // namespace

bool isWellFormedUtf8(std::string_view text) {
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  const std::ptrdiff_t end = std::ssize(text);
  for (std::ptrdiff_t at = 0; at < end;) {
    if (!skipCharacter(bytes, at, end)) return false;
  }
  return true;
}

bool isWellFormedUtf8Sequence(const unsigned char* start, const unsigned char* bound) {
  std::ptrdiff_t at = 0;
  return start != nullptr && start < bound && skipCharacter(start, at, bound - start);
}

}  // namespace Ombe
