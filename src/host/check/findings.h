// What was found about a file, with the lines that it was found in.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <string>
#include <string_view>

namespace Ombe {

enum class Severity : std::uint8_t { kNote, kWarning, kError };

const char* severityName(Severity severity);

/// What can be found, in the order in which it is told of one line. The word that programs know it
/// by, its severity and its message stand in one table.
enum class Kind : std::uint8_t {
  // The file as a whole.
  kFailure,
  kOtherPlugin,
  kExtension,
  kSize,
  kEmpty,
  kBlank,
  kShort,
  kVobSub,
  kWide,
  kBinary,
  kWebVtt,
  kSubStation,
  kSubRip,
  kLateStart,
  kUndecodable,
  kWrongCodePage,
  kDamagedText,
  kUnexplained,
  kDisagreement,
  // Lines that are not understood.
  kBadLine,
  kBlankLine,
  kSignatureLine,
  kIndentedLine,
  kHalfLine,
  kNul,
  // Lines that are, with what may be wrong with them.
  kNoText,
  kOpenBrace,
  kHeaderGiven,
  kHeaderAgain,
  kHeaderLate,
  kHeaderElsewhere,
  kHeaderWords,
  kHeaderNothing,
  kFastRate,
  kNotUtf8,
  kIsUtf8,
  kNoCharacters,
  kSingleCharacter,
  kBrokenCharacter,
  kUnknownStyle,
  kLateStyle,
  kLongStyle,
  kShortColor,
  kSlash,
  kColor,
  kNegativeFrame,
  kNoTime,
  kEndBeforeStart,
  kLongShown,
  kOverlap,
};

/// Small and packed, since a file may give one for every two bytes: what a message needs besides is
/// in the text that was read.
struct [[gnu::packed]] Finding {
  Kind kind;
  std::uint32_t line = 0;    ///< as an editor counts; 0 for the file as a whole
  std::uint32_t at = 0;      ///< where what is to be quoted begins in the text; else another line
  std::uint32_t number = 0;  ///< milliseconds, another line or bytes behind `at`
};

/// Findings of one file, with the text that they quote. Keeps the first `limit` of each kind, as
/// programs know kinds (0 keeps all), and counts the others.
class Findings {
 public:
  explicit Findings(std::size_t limit = 0) : limit_(limit) {}

  void add(const Finding& finding);
  /// One for which a name or a reason is to be told.
  void add(const Finding& finding, std::string detail);
  /// The text that `at` counts in.
  void setText(std::string text) { text_ = std::move(text); }
  [[nodiscard]] const std::string& text() const { return text_; }

  /// Puts those kept in the order of their lines. After the last was added.
  void sort();
  [[nodiscard]] const std::deque<Finding>& kept() const { return kept_; }
  /// How many of each kind were not kept; kinds that lost none are not in it.
  [[nodiscard]] std::map<std::string_view, std::size_t> omitted() const;
  /// How many there are of each kind, kept or not.
  [[nodiscard]] const std::map<std::string_view, std::size_t>& counts() const { return byWord_; }
  /// Whether one of that severity was found, kept or not.
  [[nodiscard]] bool has(Severity severity) const;

  /// For people, as it came from the file: to be made visible.
  [[nodiscard]] std::string message(const Finding& finding) const;
  /// What is wrong with the file as a whole if anything is, else with its first bad line.
  [[nodiscard]] std::string firstError() const;
  /// The start of the line that is meant, in bytes of the text; empty when it is not to be shown.
  [[nodiscard]] std::string excerpt(const Finding& finding) const;

 private:
  std::size_t limit_;
  std::string text_;
  std::deque<Finding> kept_;  // not a vector, which doubles
  std::map<Kind, std::string> details_;
  std::map<std::string_view, std::size_t> byWord_;
  std::map<Severity, std::size_t> bySeverity_;
};

/// "bad-line" and the like; stays the same in later versions.
const char* wordFor(Kind kind);
Severity severityOf(Kind kind);

}  // namespace Ombe
