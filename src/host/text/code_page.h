// Names of code pages, and guesses at them.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct UConverter;

namespace Ombe {

/// Whether ICU has a converter of that name. The empty name, which asks for no conversion, counts.
bool isKnownCodePage(const std::string& name);

/// Code pages that a text which is no UTF-8 may be in, the likeliest first and at most three. Only
/// ever a suggestion: a short text can look like many. Any thread.
std::vector<std::string> likelyCodePages(std::string_view text);

/// Reads texts of one code page, one after the other. One thread at a time.
class CodePageReader {
 public:
  /// What becomes of bytes that are no characters of the code page.
  enum class Foreign { kRefused, kReplaced };

  /// Throws std::invalid_argument for a code page that ICU does not know.
  explicit CodePageReader(const std::string& name, Foreign foreign = Foreign::kRefused);

  /// The text as UTF-8; nothing when it was refused or is too long.
  std::optional<std::string> read(std::string_view text);

 private:
  struct Close {
    void operator()(UConverter* converter) const;
  };
  std::unique_ptr<UConverter, Close> converter_;
  std::u16string units_;
};

}  // namespace Ombe
