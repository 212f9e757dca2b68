// MicroDVD style codes.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace Ombe {

/// A few bytes of markup, held in place so that most texts cost no allocation.
class Markup {
 public:
  void append(std::string_view text);
  void prepend(std::string_view text);
  [[nodiscard]] std::string_view text() const { return {bytes_.data(), size_}; }

 private:
  std::array<char, 24> bytes_;  // an opening colour tag takes 22
  std::size_t size_ = 0;
};

/// A translated text as its pieces: opening tags, a part of the original, closing tags.
struct StyledText {
  Markup opening;
  std::string_view body;
  Markup closing;

  [[nodiscard]] std::size_t size() const {
    return opening.text().size() + body.size() + closing.text().size();
  }
  /// Writes size() bytes.
  void copyTo(char* out) const;
  [[nodiscard]] std::string str() const;
};

/// Turns the one style marker that may stand at the start of an entry's text into HTML-like tags
/// around all that follows it. A slash or backslash is <i>; a code {y:...} of at most two letters
/// is dropped, its letters i and b becoming <i> and <b>; {c:$RRGGBB} is a font colour. Any other
/// text, and a marker anywhere else, stays as it is. The result refers to `text`. Pure; works on
/// bytes of any character set that holds ASCII.
StyledText translateStyleCodes(std::string_view text);

}  // namespace Ombe
