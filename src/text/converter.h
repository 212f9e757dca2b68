// Conversions between code pages and UTF-16, and from a code page to UTF-8. Each call opens and
// closes its own converters; any thread. The library is bound by the first
// call that has something to convert.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace Ombe {

/// True with a block from array new in `*buffer`, which the caller frees with delete[]; it holds
/// `*units` units and a terminating 0. What cannot be converted is replaced or ends the result, as
/// the converter has it. False when an argument is missing, empty or 0 (outputs untouched), and,
/// with null and 0 in the outputs, when there is no such converter or memory is short. Throws
/// std::bad_alloc when the library cannot be bound for want of memory.
bool toUtf16(const char* name, const unsigned char* bytes, std::uint32_t length, char16_t** buffer,
             std::size_t* units);
bool fromUtf16(const char* name, const char16_t* units, std::size_t count, char** buffer,
               std::size_t* bytes);

/// A text in the block that fromUtf16 gave; saves a copy of it.
struct ConvertedText {
  std::unique_ptr<char[]> block;
  std::size_t length = 0;

  [[nodiscard]] std::string_view view() const { return {block.get(), length}; }
};

/// The text as UTF-8; empty on any failure, shortage of memory included.
ConvertedText convertText(const char* name, const unsigned char* bytes, std::uint32_t length);
std::string convertToUtf8(const char* name, const unsigned char* bytes, std::uint32_t length);

}  // namespace Ombe
