// Delivered text as it is to look.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Ombe {

/// How the six digits of a colour are meant. The engine shows them as RRGGBB; many files were made
/// for players that read BBGGRR.
enum class ColorOrder { kRgb, kBgr };

using Color = std::uint32_t;  ///< 0xRRGGBB
inline constexpr int kColorDigits = 6;

struct Tag {
  enum class Kind { kItalic, kBold, kUnderline, kFont };
  Kind kind;
  bool closes;
  std::optional<Color> color;  ///< set for a font that names one
  std::size_t length;          ///< bytes, from "<" to ">"
};

/// The tag that a text begins with: <i>, <b>, <u>, <font ...>, or the end of one, in either case,
/// all of one line. Nothing when it begins with anything else.
std::optional<Tag> readTag(std::string_view text, ColorOrder order);

struct TextStyle {
  bool italic = false;
  bool bold = false;
  std::optional<Color> color = std::nullopt;
  bool operator==(const TextStyle&) const = default;
};

/// The tags that are open at a place of a text.
class OpenTags {
 public:
  /// Opens or closes. False for the end of what was not begun, which is no tag but text.
  bool take(const Tag& tag);
  [[nodiscard]] TextStyle style() const;

 private:
  std::size_t counts_[4] = {};                // by kind
  std::vector<std::optional<Color>> colors_;  // of the fonts, innermost last
};

struct Span {
  TextStyle style;
  std::string text;  ///< UTF-8 without anything that a terminal would act on
  bool operator==(const Span&) const = default;
};

/// Neighbouring spans differ in style, and none is empty.
using StyledLine = std::vector<Span>;

/// Appends to the last span if it has that style, else as another; an empty text is none.
void appendSpan(StyledLine& line, const TextStyle& style, std::string_view text);

/// Styles a text by its tags for italics, bold and colour. A style ends with the text at the
/// latest. Other tags, and ends of what was not begun, stay in the text. Always gives at least one
/// line.
std::vector<StyledLine> parseMarkup(std::string_view text, ColorOrder order = ColorOrder::kRgb);

}  // namespace Ombe
