// Texts that were read with the wrong code page, and guesses at the right one.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Ombe {

/// Code pages that a text which is no UTF-8 may be in, the likeliest first and at most three; each
/// has a converter that reads the text. Only ever a suggestion: a short text can look like many.
/// Any thread.
std::vector<std::string> likelyCodePages(std::string_view text);

/// "try --code-page A, B or C", or what to do when nothing is likely.
std::string codePageAdvice(const std::vector<std::string>& likely);

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
