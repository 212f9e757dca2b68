#include "host/play/text_width.h"

#include <unicode/uchar.h>

#include <algorithm>

#include "host/text/icu_function.h"
#include "host/text/utf8_scan.h"

namespace Ombe {
namespace {

struct Character {
  std::size_t length;  // bytes
  int cells;
};

int cellsOf(UChar32 c) {
  constexpr std::uint32_t kMarks = U_GC_MN_MASK | U_GC_ME_MASK | U_GC_CF_MASK;
  if (c < 0x300) return 1;  // also the soft hyphen, which terminals show
  if ((U_MASK(OMBE_ICU("uc", u_charType)(c)) & kMarks) != 0) return 0;
  const int syllable = OMBE_ICU("uc", u_getIntPropertyValue)(c, UCHAR_HANGUL_SYLLABLE_TYPE);
  if (syllable == U_HST_VOWEL_JAMO || syllable == U_HST_TRAILING_JAMO) return 0;
  const int width = OMBE_ICU("uc", u_getIntPropertyValue)(c, UCHAR_EAST_ASIAN_WIDTH);
  return width == U_EA_WIDE || width == U_EA_FULLWIDTH ? 2 : 1;
}

Character firstCharacter(std::string_view text) {
  const Utf8Piece piece = nextUtf8Piece(text);
  return {piece.length, cellsOf(piece.codePoint)};
}

/// Fills lines word by word. A word may run over several spans.
class Wrapper {
 public:
  explicit Wrapper(int columns) : columns_(std::max(columns, 2)) {}

  void put(const TextStyle& style, std::string_view character, int cells) {
    if (character == " ") {
      closeWord();
      ++gap_;
      return;
    }
    if (wordCells_ + cells > columns_) closeWord();
    appendSpan(word_, style, character);
    wordCells_ += cells;
  }

  std::vector<StyledLine> finish() {
    closeWord();
    return std::move(lines_);
  }

 private:
  void closeWord() {
    if (word_.empty()) return;
    if (used_ > 0 && used_ + gap_ + wordCells_ > columns_) {
      lines_.emplace_back();
      used_ = 0;
      gap_ = 0;
    }
    const int gap = std::min(gap_, columns_ - wordCells_);
    appendSpan(lines_.back(), word_.front().style, std::string(static_cast<std::size_t>(gap), ' '));
    for (const Span& span : word_) appendSpan(lines_.back(), span.style, span.text);
    used_ += gap + wordCells_;
    gap_ = 0;
    wordCells_ = 0;
    word_.clear();
  }

  int columns_;
  std::vector<StyledLine> lines_{1};
  int used_ = 0;  // cells of the last line
  int gap_ = 0;   // blanks before the word
  StyledLine word_;
  int wordCells_ = 0;
};

}  // namespace

int cellCount(std::string_view text) {
  int cells = 0;
  while (!text.empty()) {
    const Character character = firstCharacter(text);
    cells += character.cells;
    text.remove_prefix(character.length);
  }
  return cells;
}

int cellCount(const StyledLine& line) {
  int cells = 0;
  for (const Span& span : line) cells += cellCount(span.text);
  return cells;
}

std::vector<StyledLine> wrapLine(const StyledLine& line, int columns) {
  if (cellCount(line) <= columns) return {line};
  Wrapper wrapper(columns);
  for (const Span& span : line) {
    std::string_view text = span.text;
    while (!text.empty()) {
      const Character character = firstCharacter(text);
      wrapper.put(span.style, text.substr(0, character.length), character.cells);
      text.remove_prefix(character.length);
    }
  }
  return wrapper.finish();
}

std::string_view clipText(std::string_view text, int columns) {
  std::size_t end = 0;
  while (end < text.size()) {
    const Character character = firstCharacter(text.substr(end));
    if (character.cells > columns) break;
    columns -= character.cells;
    end += character.length;
  }
  return text.substr(0, end);
}

}  // namespace Ombe
