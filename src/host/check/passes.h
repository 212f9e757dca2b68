// What goes over the lines of a file to explain how the plug-in takes them. All take time and
// memory in proportion to the text.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/check/check.h"
#include "host/text/code_page.h"
#include "host/text/likely_code_pages.h"

namespace Ombe {

/// What the plug-in said of a file.
struct Answer {
  /// Many times, told apart by their sums, since a file may have millions.
  struct Times {
    std::uint64_t count = 0;
    std::uint64_t starts = 0;
    std::uint64_t durations = 0;
    void add(std::uint32_t start, std::uint32_t duration) {
      ++count;
      starts += start;
      durations += duration;
    }
    bool operator==(const Times&) const = default;
  };
  std::optional<Step> failed = {};  ///< nothing when it opens and plays
  std::string reason = {};          ///< where the plug-in was not asked, or gave up later
  bool isMicroDVD = false;
  std::string codePage = {};  ///< that was given or found
  bool hasSignature = false;  ///< it was found
  std::optional<CodePageChoice> choice = {};
  Times times = {};  ///< of what was delivered
};

Answer askPlugin(const std::string& path, const SessionOptions& options);

/// The bytes decoded as the plug-in does it where it decodes a whole text: from the code page of
/// their signature, else from the one named. Nothing where that fails.
std::optional<std::string> decodedText(std::string_view bytes, const std::string& codePage);
std::size_t signatureLength(std::string_view bytes);

/// A line that is not empty, where it stands, and its number as an editor counts.
struct TextLine {
  std::string_view text;
  std::uint32_t number;
  std::uint32_t at;
};

/// Hands the lines to `take` as the plug-in splits them: up to the first NUL. LF, CR LF and CR end
/// a line. Ends early when `take` answers false. The number of the line where it ended.
template <typename Take>
std::uint32_t forEachLine(std::string_view text, const Take& take) {
  text = text.substr(0, text.find('\0'));
  std::uint32_t number = 1;
  for (std::size_t at = 0;; ++number) {
    const std::size_t end = std::min(text.find_first_of("\r\n", at), text.size());
    const TextLine line{text.substr(at, end - at), number, static_cast<std::uint32_t>(at)};
    if ((end > at && !take(line)) || end == text.size()) return number;
    at = end + (text.substr(end).starts_with("\r\n") ? 2 : 1);
  }
}

/// Why a line that does not read {first}{last}text is not understood.
Kind badLineKind(const std::string& line);
/// Whether the first line that is not empty begins with two frame numbers.
bool firstLineIsMicroDVD(std::string_view text);

/// Adds why the plug-in does not recognise a file of these first bytes.
void explainUnrecognised(std::string_view bytes, const Answer& answer, Findings& findings);
/// Whether the text seems to have 16 or 32 bits a character.
bool isWide(std::string_view bytes);

/// A subtitle as the plug-in should make it; milliseconds.
struct TimedLine {
  std::uint32_t line;
  std::uint32_t start;
  std::uint32_t end;
};

/// Reads the text of the findings line by line as the plug-in does, but goes on behind a line of
/// another form; fills in what the report says of them. `user` is the user's rate, or unset.
void checkLines(const Answer& answer, FrameRate user, CheckReport& report);

/// Whether the texts are in the code page that they will be converted from, in the order of lines.
class TextCheck {
 public:
  /// An empty code page stands for UTF-8.
  TextCheck(const std::string& codePage, Findings& findings);

  void take(const TextLine& text);
  /// Adds what concerns all of them. The code pages that they may be in. Last call.
  std::vector<std::string> finish();

 private:
  void convert(const TextLine& text);

  Findings& findings_;
  std::string codePage_;
  std::unique_ptr<CodePageReader> reader_;  // null for UTF-8
  GarbledTexts garbled_;
  TextLine garbledLine_{};   // the first
  TextLine nonAsciiLine_{};  // the first with a letter beyond ASCII
};

/// Adds the first code that will be shown as text, and a slash before a line other than the first.
void checkStyle(const TextLine& line, std::string_view text, Findings& findings);
/// Whether the text begins with a colour code that is translated.
bool hasColor(std::string_view text);

/// Adds subtitles that end before they start, that stay longer than 20 seconds, and that begin
/// before an earlier one has ended.
void checkTiming(std::vector<TimedLine>& subtitles, Findings& findings);

}  // namespace Ombe
