// Splits a text into lines in place.
#pragma once

#include <cstdint>

namespace Ombe {

/// Walks a writable, NUL-terminated text of at most 2^31 - 1 bytes that belongs to the caller, and
/// overwrites the delimiter behind each token with NUL. Owns nothing.
class TextTokenizer {
 public:
  explicit TextTokenizer(char* writableText) : text(writableText) {}

  /// The next run of bytes that holds none of `delimiters` (NUL-terminated), or null when there is
  /// none left; runs of delimiters are one separator. `reported`, when given, receives the token's
  /// length in bytes, plus one when a delimiter ended it: room enough for a copy, not a measure.
  char* nextToken(const char* delimiters, std::uint32_t* reported);

  /// Where the token returned last ends: at the NUL behind it.
  [[nodiscard]] const char* tokenEnd() const { return end_; }

 private:
  char* text;
  std::int32_t position = -1;  // of the byte examined last
  const char* end_ = nullptr;
};

}  // namespace Ombe
