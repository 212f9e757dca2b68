// What texts look like, language by language.
#pragma once

#include <span>
#include <string_view>

namespace Ombe {

/// Enough of a language to tell which code page makes a text of bytes.
struct Language {
  /// That its texts are kept in, the likeliest first, as ICU names them, with blanks between.
  std::string_view codePages;
  /// Its small letters beyond ASCII, or else its usual characters, the most frequent first.
  std::u16string_view letters;
  /// Frequent words of ASCII letters, with blanks between.
  std::string_view words;
};

/// The likelier of what looks alike comes first. Static.
std::span<const Language> languages();

}  // namespace Ombe
