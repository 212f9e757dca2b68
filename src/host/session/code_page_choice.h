// The code page of a file for which nobody names one.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Ombe {

/// What asks for a choice where a code page is named.
inline constexpr const char* kAutoCodePage = "auto";

struct CodePageChoice {
  enum class Ground {
    kSignature,  ///< the file states its code page, to which it is left
    kUtf8,       ///< read as it is: all of it is UTF-8, or most lines that go beyond ASCII
    kGuess,      ///< the likeliest one
    kNone,       ///< no UTF-8, and nothing is likely
  };

  Ground ground = Ground::kNone;
  std::string codePage = {};             ///< stated or guessed; else empty
  std::vector<std::string> likely = {};  ///< of a guess, itself the first
  std::size_t lines = 0;                 ///< that are no UTF-8

  [[nodiscard]] bool isGuess() const { return ground == Ground::kGuess; }
};

/// Looks at the bytes of a file without signature.
CodePageChoice chooseCodePage(std::string_view bytes);

/// "windows-1250, guessed from 812 lines".
std::string describe(const CodePageChoice& choice);

}  // namespace Ombe
