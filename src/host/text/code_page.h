// Texts in code pages that ICU knows.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

struct UConverter;

namespace Ombe {

/// Whether ICU has a converter of that name. The empty name, which asks for no conversion, counts.
bool isKnownCodePage(const std::string& name);

/// Reads texts of one code page, one after the other. One thread at a time.
class CodePageReader {
 public:
  /// What becomes of bytes that are no characters: they end the reading, or become U+FFFD.
  enum class Unreadable { kStop, kReplace };

  /// Throws std::invalid_argument for a code page that ICU does not know.
  explicit CodePageReader(const std::string& name, Unreadable unreadable = Unreadable::kStop);

  [[nodiscard]] bool isUtf8() const;

  /// Whether all bytes are characters of the code page. Takes no memory to speak of.
  bool reads(std::string_view text);

  /// The text as UTF-8; nothing when some of its bytes are no characters or
  /// it is longer than 700 MB.
  std::optional<std::string> read(std::string_view text);

  /// The text as UTF-16, up to where it cannot go on.
  std::u16string units(std::string_view text);

 private:
  struct Close {
    void operator()(UConverter* converter) const;
  };
  /// Hands the text as UTF-16 to `take`, piece by piece. False where it cannot go on.
  template <typename Take>
  bool convert(std::string_view text, const Take& take);

  std::unique_ptr<UConverter, Close> converter_;
};

}  // namespace Ombe
