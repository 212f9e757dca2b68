#include "host/fix/head.h"

#include <algorithm>

#include "host/fix/source_lines.h"
#include "microdvd/lines/number_scan.h"

namespace Ombe {
namespace {

class HeadReader {
 public:
  explicit HeadReader(std::string_view line) : rest_(line) {}

  std::optional<Head> read() {
    skipBlanks();
    opening_[0] = skipBraces("{[", kMany);
    skipBlanks();
    head_.first = takeNumber();
    if (head_.first.empty()) return std::nullopt;
    const State behindFirst{rest_, head_.mends};
    skipBlanks();
    closing_[0] = skipBraces("}]", kMany);
    const State behindBrace{rest_, closing_[0] != 0 ? head_.mends : behindFirst.mends};
    if (!readSecond()) {
      if (opening_[0] == 0 || closing_[0] == 0) return std::nullopt;
      // One number in braces: the text begins right behind it.
      rest_ = behindBrace.rest;
      head_.mends = behindBrace.mends;
      head_.last = {};
      opening_[1] = closing_[1] = 0;
    }
    return finish();
  }

 private:
  static constexpr std::size_t kMany = 8;
  struct State {
    std::string_view rest;
    std::uint32_t mends;
  };

  void skipBlanks() {
    while (const std::size_t length = blankLength(rest_)) {
      rest_.remove_prefix(length);
      head_.mends |= kBlanksRemoved;
    }
  }

  std::size_t skipBraces(std::string_view kinds, std::size_t most) {
    std::size_t count = 0;
    while (count < most && !rest_.empty() && kinds.find(rest_.front()) != std::string_view::npos) {
      if (rest_.front() == kinds[1]) head_.mends |= kSquareReplaced;
      rest_.remove_prefix(1);
      ++count;
    }
    if (count > 1) head_.mends |= kDoubledRemoved;
    return count;
  }

  void skipSeparators() {
    skipBlanks();
    while (!rest_.empty() && (rest_.front() == ',' || rest_.front() == ';' ||
                              (rest_.front() == '-' && opening_[1] == 0))) {
      rest_.remove_prefix(1);
      head_.mends |= kSeparatorRemoved;
      skipBlanks();
    }
  }

  std::string_view takeNumber() {
    std::size_t size = rest_.starts_with('-') || rest_.starts_with('+') ? 1 : 0;
    if (size == rest_.size() || !isDigit(rest_[size])) return {};
    while (size < rest_.size() && isDigit(rest_[size])) ++size;
    const std::string_view number = rest_.substr(0, size);
    rest_.remove_prefix(size);
    return number;
  }

  /// Whether there is a second pair of braces, with or without a number in it.
  bool readSecond() {
    skipSeparators();
    opening_[1] = skipBraces("{[", kMany);
    skipBlanks();
    head_.last = takeNumber();
    const State behindNumber{rest_, head_.mends};
    skipBlanks();
    closing_[1] = skipBraces("}]", std::max<std::size_t>(opening_[1], 1));
    if (closing_[1] == 0) {
      rest_ = behindNumber.rest;
      head_.mends = behindNumber.mends;
    }
    if (head_.last.empty()) return opening_[1] != 0 && closing_[1] != 0;
    const int secondBraces = (opening_[1] != 0 ? 1 : 0) + (closing_[1] != 0 ? 1 : 0);
    const int firstBraces = (opening_[0] != 0 ? 1 : 0) + (closing_[0] != 0 ? 1 : 0);
    return secondBraces != 0 && firstBraces + secondBraces >= 2;
  }

  Head finish() {
    head_.text = rest_;
    const bool hasSecond = !head_.last.empty() || opening_[1] != 0;
    for (int i = 0; i < (hasSecond ? 2 : 1); ++i) {
      if (opening_[i] == 0) head_.mends |= kOpeningAdded;
      if (closing_[i] == 0) head_.mends |= kClosingAdded;
    }
    for (int i = 0; i < 2; ++i) {
      head_.braces += (opening_[i] != 0 ? 1 : 0) + (closing_[i] != 0 ? 1 : 0);
    }
    return head_;
  }

  std::string_view rest_;
  std::size_t opening_[2] = {0, 0};
  std::size_t closing_[2] = {0, 0};
  Head head_;
};

}  // namespace

std::string mendsText(std::uint32_t mends) {
  constexpr const char* kTexts[] = {
      "blanks around the numbers removed",
      "opening brace added",
      "closing brace added",
      "doubled brace removed",
      "square brackets replaced",
      "separator between the numbers removed",
      "control bytes removed",
      "numbers put on one line",
      "digits of the first number removed",
  };
  std::string text;
  for (std::size_t i = 0; i < std::size(kTexts); ++i) {
    if ((mends >> i & 1U) != 0) text.append(text.empty() ? "" : ", ").append(kTexts[i]);
  }
  return text;
}

std::optional<Head> readHead(std::string_view line) { return HeadReader(line).read(); }

bool isPartOfHead(std::string_view line) {
  return line.find_first_not_of("{}[]0123456789+- \t") == std::string_view::npos;
}

}  // namespace Ombe
