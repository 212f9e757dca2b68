// Guesses at the code page of a text.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Ombe {

/// Code pages that a text which is no UTF-8 may be in, the likeliest first and at most three, no
/// two of which decode it alike. Looks at the start of a longer text alone. Only ever a
/// suggestion: a short text can look like many. Any thread.
std::vector<std::string> likelyCodePages(std::string_view text);

/// Gathers what is garbled among the texts of one file, as much as a guess needs.
class GarbledTexts {
 public:
  /// Whether the text is no UTF-8.
  bool take(std::string_view text);

  /// How many there were.
  [[nodiscard]] std::size_t count() const { return count_; }
  /// None when there was no garbled text.
  [[nodiscard]] std::vector<std::string> likelyCodePages() const;

 private:
  std::size_t count_ = 0;
  std::string sample_;
};

}  // namespace Ombe
