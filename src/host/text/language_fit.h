// How well a text fits a language.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "host/text/languages.h"

namespace Ombe {

/// A number for each character that there may be.
using CharacterTable = std::vector<std::uint32_t>;

/// What a code page makes of a text: its characters beyond ASCII.
struct ForeignCharacters {
  /// The table is all zeros, and is so again afterwards: one serves for many texts, since most have
  /// far fewer characters than it.
  ForeignCharacters(std::u16string_view text, CharacterTable& table);

  std::vector<std::pair<char16_t, std::size_t>> counts;  ///< each, and how many there are
  std::size_t misplaced = 0;                             ///< that no language puts where they stand
  std::size_t total = 0;
};

/// How surprising the characters are in a text of the language: the sum of the negative logarithms
/// of how often each is to be expected among those beyond ASCII. Any thread.
double costIn(const Language& language, const ForeignCharacters& characters);

/// What a character costs, on average, in a text of another kind.
inline constexpr double kIncredibleCost = 9;
/// What a frequent word of a language in the text takes off the cost in it.
inline constexpr double kFrequentWord = 2;

}  // namespace Ombe
