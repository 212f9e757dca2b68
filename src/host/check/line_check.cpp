#include "host/check/line_check.h"

#include <algorithm>
#include <cstring>

#include "host/check/line_walker.h"
#include "host/check/style_check.h"
#include "host/check/text_encoding_check.h"
#include "host/check/timing_check.h"
#include "microdvd/lines/line_scan.h"

namespace Ombe {
namespace {

/// Why a line was not understood; empty when there is nothing to add to that.
std::string reasonOf(const char* line) {
  const std::size_t blanks = std::strspn(line, " \t\v\f");
  if (line[blanks] == '\0') return " (only blanks: delete them)";
  if (std::strncmp(line, "\xEF\xBB\xBF", 3) == 0) return " (a UTF-8 signature inside the text)";
  if (blanks > 0 && scanLine(line + blanks).count >= 2) return " (blanks before the first brace)";
  if (scanLine(line).count == 1) return " (no second frame number in braces)";
  return {};
}

class LineChecker {
 public:
  LineChecker(FrameRate user, const std::string& codePage, Findings& findings)
      : encoding_(codePage, findings), findings_(findings) {
    if (user.isSet()) result_.rate = {user, "user", 0};
  }

  void take(const char* line, std::uint64_t number) {
    const ScannedLine scanned = scanLine(line);
    if (scanned.count < 2) return addBadLine(line, number, findings_);
    if (scanned.count == 2) return addEmpty(line, number);
    std::string text(scanned.text, scanned.textLength);
    if (takeHeader(scanned, text, number)) return;
    if (!result_.rate.rate.isSet()) result_.rate = {kDefaultFrameRate, "default", 0};
    encoding_.take(text, number);
    std::replace(text.begin(), text.end(), '|', '\n');
    checkStyle(text, number, line, findings_);
    addSubtitle(scanned, number, line);
  }

  LineCheck finish() {
    encoding_.finish();
    return std::move(result_);
  }

 private:
  void addEmpty(const char* line, std::uint64_t number) {
    const bool closed = std::strchr(std::strchr(line, '}') + 1, '}') != nullptr;
    findings_.add({Severity::kWarning, "no-text", number,
                   closed ? "has no text and is not shown"
                          : "its second brace is not closed, so it is not shown",
                   line});
  }

  bool takeHeader(const ScannedLine& line, const std::string& text, std::uint64_t number) {
    if (line.firstFrame != 1 || line.lastFrame != 1 || line.textLength >= kHeaderLimit) {
      return false;
    }
    std::string copy = text;
    const HeaderReading reading = readHeader(copy.data());
    if (result_.rate.rate.isSet() || !reading.isHeader) {
      addNoHeader(reading.isHeader, text, number);
      return false;
    }
    if (reading.rate) result_.rate = {*reading.rate, "header", number};
    if (!result_.rate.rate.isSet()) {
      findings_.add({Severity::kWarning, "header", number,
                     "taken as the frame rate, but it states none", text});
    }
    return true;
  }

  void addNoHeader(bool isNumber, const std::string& text, std::uint64_t number) {
    const RateUse& rate = result_.rate;
    std::string why;
    if (isNumber && std::strcmp(rate.source, "user") == 0) {
      why = "shown as a subtitle, since the frame rate was given";
    } else if (isNumber) {
      why = rate.line != 0 ? "shown as a subtitle, since line " + std::to_string(rate.line) +
                                 " states the frame rate"
                           : "shown as a subtitle, since it does not come before the others";
    } else if (text.find_first_of("0123456789") != std::string::npos) {
      why = "shown as a subtitle: a frame rate is a number alone, such as 25 or 23.976";
    } else {
      return;
    }
    findings_.add({Severity::kWarning, "header", number, why, text});
  }

  void addSubtitle(const ScannedLine& scanned, std::uint64_t number, const char* line) {
    const FrameRate rate = result_.rate.rate;
    result_.subtitles.push_back({number, frameToMilliseconds(scanned.firstFrame, rate),
                                 frameToMilliseconds(scanned.lastFrame, rate)});
    if (scanned.firstFrame < 0 || scanned.lastFrame < 0) {
      findings_.add({Severity::kWarning, "negative-frame", number,
                     "has a negative frame number, which counts as a very late one", line});
    }
  }

  LineCheck result_;
  TextEncodingCheck encoding_;
  Findings& findings_;
};

}  // namespace

LineCheck checkLines(const std::string& text, FrameRate user, const std::string& codePage,
                     Findings& findings) {
  LineChecker checker(user, codePage, findings);
  LineWalker lines(text);
  while (lines.next()) checker.take(lines.line(), lines.number());
  LineCheck result = checker.finish();
  checkTiming(result.subtitles, findings);
  return result;
}

void addBadLine(const char* line, std::uint64_t number, Findings& findings) {
  findings.add(
      {Severity::kError, "bad-line", number, "not \"{first}{last}text\"" + reasonOf(line), line});
}

}  // namespace Ombe
