// Conversions of strings that the engine offers.
#pragma once

#include <string>

#include "ombe_core/export.h"

namespace Ombe {

/// Pure functions; any thread.
struct OMBE_API StringTools {
  using UString = std::basic_string<unsigned char>;

  /// UTF-8 bytes to wide characters, one a code point. A byte b that is part of no well-formed
  /// sequence becomes U+DC00 + b, so that any path survives the way there and back.
  static std::wstring uStringToWstring(const UString& bytes);

  /// The inverse of uStringToWstring.
  static std::string wstringToBytes(const std::wstring& text);

  /// The other form of a language code: two letters (ISO 639-1) to three (ISO 639-2/T) and back,
  /// where the bibliographic codes are understood too. A code that is not known comes back
  /// unchanged. Lower case only.
  static std::string convertLanguageCode(const std::string& code);
};

}  // namespace Ombe
