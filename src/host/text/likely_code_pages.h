// Guesses at the code page of a text.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Ombe {

/// More bytes of a text do not sharpen a guess.
inline constexpr std::size_t kCodePageSample = std::size_t{1} << 14;

/// Code pages that a text which is no UTF-8 may be in, the likeliest first and at most three, no
/// two of which decode it alike. Looks at the start of a longer text alone. Only ever a
/// suggestion: a short text can look like many. Any thread.
std::vector<std::string> likelyCodePages(std::string_view text);

}  // namespace Ombe
