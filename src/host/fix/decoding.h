// The bytes of a file as text.
#pragma once

#include <string>

namespace Ombe {

struct DecodedText {
  std::string text;      ///< UTF-8 without a signature
  std::string codePage;  ///< that the bytes were in; empty where none is known: there is no text
  bool isLossy = false;  ///< bytes that are no characters of it became U+FFFD
};

/// Decodes the bytes by the code page named, which ICU knows; with an empty name as UTF-8, or as
/// UTF-16 that lacks its signature, or else by the code page guessed, if there is one. Throws
/// std::length_error beyond 700 MB.
DecodedText decodeBytes(std::string bytes, const std::string& codePage, const std::string& guess);

}  // namespace Ombe
