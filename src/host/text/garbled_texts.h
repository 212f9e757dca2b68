// Texts that were read with the wrong code page.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Ombe {

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
