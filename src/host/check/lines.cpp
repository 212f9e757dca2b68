#include <cstring>

#include "host/check/passes.h"
#include "microdvd/lines/line_scan.h"
#include "microdvd/lines/rate_in_force.h"

namespace Ombe {
namespace {

class LineChecker {
 public:
  LineChecker(FrameRate user, const std::string& codePage, CheckReport& report)
      : report_(report),
        findings_(report.findings),
        rate_(user),
        texts_(codePage, report.findings) {
    if (user.isSet()) report_.rate = {user, RateSource::kUser, 0};
  }

  void take(const TextLine& line) {
    copy_ = line.text;
    const ScannedLine scanned = scanLine(copy_.c_str(), copy_.c_str() + copy_.size());
    if (scanned.count < 2) return add(badLineKind(copy_), line);
    if (scanned.count == 2) return takeEmpty(line);
    const std::size_t before = line.text.size() - scanned.textLength;
    const TextLine text{line.text.substr(before), line.number,
                        line.at + static_cast<std::uint32_t>(before)};
    if (takeHeader(scanned, text)) return;
    texts_.take(text);
    checkStyle(line, text.text, findings_);
    if (coloredLine_ == 0 && hasColor(text.text)) coloredLine_ = line.number;
    takeSubtitle(scanned, line);
  }

  std::vector<TimedLine> finish() {
    report_.likelyCodePages = texts_.finish();
    if (coloredLine_ != 0) findings_.add({Kind::kColor, coloredLine_});
    constexpr double kFastest = 120;
    const RateUse& rate = report_.rate;
    if (rate.rate.isSet() && rate.rate.perSecond() > kFastest) {
      findings_.add({Kind::kFastRate, rate.line});
    }
    return std::move(subtitles_);
  }

 private:
  void add(Kind kind, const TextLine& line, std::uint32_t number = 0) {
    findings_.add({kind, line.number, line.at, number});
  }

  void takeEmpty(const TextLine& line) {
    const std::size_t first = line.text.find('}');
    const bool isClosed = line.text.find('}', first + 1) != std::string_view::npos;
    add(isClosed ? Kind::kNoText : Kind::kOpenBrace, line);
  }

  /// Whether the line states the rate instead of being a subtitle.
  bool takeHeader(const ScannedLine& line, const TextLine& text) {
    std::string copy(text.text);
    const bool wasSet = rate_.rate().isSet();
    const bool isHeader = rate_.take(line, copy.data()).isHeader;
    if (!isHeader) explainNoHeader(line, text, !wasSet);
    if (!wasSet && rate_.rate().isSet()) {
      report_.rate = {rate_.rate(), isHeader ? RateSource::kHeader : RateSource::kDefault,
                      isHeader ? text.number : 0};
    }
    if (isHeader && !rate_.rate().isSet()) add(Kind::kHeaderNothing, text);
    return isHeader;
  }

  /// Why a line that may be meant as a header is a subtitle.
  void explainNoHeader(const ScannedLine& line, const TextLine& text, bool isFirst) {
    isLikeHeader_ = false;
    if (line.textLength >= kHeaderLimit) return;
    std::string copy(text.text);
    const bool isPlace = line.firstFrame == 1 && line.lastFrame == 1;
    const bool isNumber = readHeader(copy.data()).isHeader;
    if (!isPlace && !(isNumber && isFirst)) return;
    if (!isNumber && text.text.find_first_of("0123456789") == std::string_view::npos) return;
    isLikeHeader_ = true;
    if (!isPlace) return add(Kind::kHeaderElsewhere, text);
    if (!isNumber) return add(Kind::kHeaderWords, text);
    const RateSource source = report_.rate.source;
    if (source == RateSource::kUser) return add(Kind::kHeaderGiven, text);
    if (source == RateSource::kHeader) return add(Kind::kHeaderAgain, text, report_.rate.line);
    add(Kind::kHeaderLate, text);
  }

  void takeSubtitle(const ScannedLine& scanned, const TextLine& line) {
    const FrameRate rate = rate_.rate();
    const TimedLine timed{line.number, frameToMilliseconds(scanned.firstFrame, rate),
                          frameToMilliseconds(scanned.lastFrame, rate)};
    subtitles_.push_back(timed);
    if (timed.start == timed.end && !isLikeHeader_) add(Kind::kNoTime, line);
    if (scanned.firstFrame < 0 || scanned.lastFrame < 0) add(Kind::kNegativeFrame, line);
  }

  CheckReport& report_;
  Findings& findings_;
  RateInForce rate_;
  TextCheck texts_;
  std::string copy_;  // of the line, ended by NUL
  std::vector<TimedLine> subtitles_;
  std::uint32_t coloredLine_ = 0;
  bool isLikeHeader_ = false;
};

}  // namespace

Kind badLineKind(const std::string& line) {
  const std::size_t blanks = std::min(line.find_first_not_of(" \t\v\f"), line.size());
  if (blanks == line.size()) return Kind::kBlankLine;
  if (line.starts_with("\xEF\xBB\xBF")) return Kind::kSignatureLine;
  if (scanLine(line.c_str() + blanks).count >= 2) return Kind::kIndentedLine;
  return scanLine(line.c_str()).count == 1 ? Kind::kHalfLine : Kind::kBadLine;
}

bool firstLineIsMicroDVD(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of("\r\n"), text.size()));
  const std::string line(text.substr(0, text.find_first_of("\r\n")));
  return scanLine(line.c_str()).count >= 2;
}

void checkLines(const Answer& answer, FrameRate user, CheckReport& report) {
  Findings& findings = report.findings;
  LineChecker checker(user, answer.hasSignature ? "" : answer.codePage, report);
  const std::string& text = findings.text();
  const std::uint32_t end = forEachLine(text, [&checker](const TextLine& line) {
    checker.take(line);
    return true;
  });
  if (text.find('\0') != std::string::npos) findings.add({Kind::kNul, end});
  std::vector<TimedLine> subtitles = checker.finish();
  checkTiming(subtitles, findings);
  Answer::Times expected;
  for (const TimedLine& line : subtitles) expected.add(line.start, line.end - line.start);
  const bool agrees = expected == answer.times && !findings.has(Severity::kError);
  if (!answer.failed && !agrees) findings.add({Kind::kDisagreement});
}

}  // namespace Ombe
