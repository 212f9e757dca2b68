#include "host/text/language_fit.h"

#include <unicode/uchar.h>

#include <cmath>
#include <optional>

#include "host/text/icu_function.h"

namespace Ombe {
namespace {

// Costs. A capital adds to that of its small letter.
constexpr double kCapital = 1.5;
constexpr double kMark = 6;      // punctuation of many languages
constexpr double kWideMark = 4;  // punctuation of the languages of China and Japan
constexpr double kRareKana = 7.5;
constexpr double kRareSyllable = 7.5;
constexpr double kRareIdeograph = 8.5;
constexpr double kStrange = 12;
constexpr double kMisplaced = 5;

constexpr char16_t kFirstNotLatin = 0x370;
constexpr char16_t kFirstMark = 0x2000;  // no letters from here to the wide ones
constexpr char16_t kFirstWide = 0x3000;
constexpr char16_t kReplaced = 0x1A;  // put for bytes that are no characters, like U+FFFD

bool isAsciiLetter(char16_t c) { return (c | 0x20) >= u'a' && (c | 0x20) <= u'z'; }
bool isWideMark(char16_t c) { return (c >= 0x3000 && c < 0x3040) || (c > 0xFF00 && c < 0xFF5F); }
bool isKana(char16_t c) { return c > 0x3040 && c <= 0x30FE; }
bool isIdeograph(char16_t c) { return c >= 0x4E00 && c <= 0x9FFF; }
bool isSyllable(char16_t c) { return c >= 0xAC00 && c <= 0xD7A3; }

bool isCapital(char16_t c) { return OMBE_ICU("uc", u_charType)(c) == U_UPPERCASE_LETTER; }
bool isSmall(char16_t c) { return OMBE_ICU("uc", u_charType)(c) == U_LOWERCASE_LETTER; }

/// What is not among the language's letters.
double costOfOther(const Language& language, char16_t c) {
  constexpr std::u16string_view kMarks = u"\u00A0«»„”“’‘‚–—…¿¡´°º№♪،؟";
  if (kMarks.find(c) != std::u16string_view::npos) return kMark;
  const char16_t last = language.letters.back();
  if (last < kFirstWide) return kStrange;
  if (isWideMark(c)) return kWideMark;
  if (isSyllable(last)) return isSyllable(c) ? kRareSyllable : kStrange;
  if (isKana(last) && isKana(c)) return kRareKana;
  return isIdeograph(c) ? kRareIdeograph : kStrange;
}

/// The language's letters, of which each is about as frequent as its place in the list says.
class Costs {
 public:
  explicit Costs(const Language& language) : language_(language) {
    for (std::size_t rank = 0; rank < language.letters.size(); ++rank) sum_ += share(rank);
    constexpr double kListed = 0.4;  // of a text in a language of thousands of characters
    if (language.letters.back() >= kFirstWide) sum_ /= kListed;
  }

  [[nodiscard]] double of(char16_t c) const {
    if (const auto cost = ofListed(c)) return *cost;
    const auto cost = ofListed(static_cast<char16_t>(OMBE_ICU("uc", u_tolower)(c)));
    return cost ? *cost + kCapital : costOfOther(language_, c);
  }

 private:
  static double share(std::size_t rank) { return 1 / (static_cast<double>(rank) + 1.5); }

  [[nodiscard]] std::optional<double> ofListed(char16_t c) const {
    const std::size_t rank = language_.letters.find(c);
    if (rank == std::u16string_view::npos) return std::nullopt;
    return std::log(sum_ / share(rank));
  }

  const Language& language_;
  double sum_ = 0;
};

/// For how many reasons no language puts the character between its neighbours.
std::size_t misplacements(char16_t before, char16_t c, char16_t behind) {
  const bool isCapitalInside =
      (isCapital(c) && isSmall(before)) || (behind >= 'A' && behind <= 'Z' && isSmall(c));
  const bool isOfOtherScript =
      c >= kFirstNotLatin && c < kFirstMark && (isAsciiLetter(before) || isAsciiLetter(behind));
  return std::size_t{isCapitalInside} + std::size_t{isOfOtherScript};
}

}  // namespace

ForeignCharacters::ForeignCharacters(std::u16string_view text, CharacterTable& table) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t c = text[i];
    if (c < 0x80 && c != kReplaced) continue;
    if (table[c]++ == 0) counts.emplace_back(c, 0);
    misplaced +=
        misplacements(i == 0 ? u' ' : text[i - 1], c, i + 1 == text.size() ? u' ' : text[i + 1]);
    ++total;
  }
  for (auto& [c, count] : counts) count = std::exchange(table[c], 0);
}

double costIn(const Language& language, const ForeignCharacters& characters) {
  const Costs costs(language);
  double sum = kMisplaced * static_cast<double>(characters.misplaced);
  for (const auto& [c, count] : characters.counts) sum += costs.of(c) * static_cast<double>(count);
  return sum;
}

}  // namespace Ombe
