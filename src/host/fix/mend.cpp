#include <strings.h>

#include <deque>
#include <optional>
#include <utility>

#include "host/fix/draft.h"
#include "host/fix/source_lines.h"
#include "microdvd/lines/line_scan.h"

namespace Ombe {
namespace {

// The plug-in looks for the first numbers in 1,024 bytes.
constexpr std::size_t kLongNumber = 512;

/// "{DEFAULT}{}{y:i}" and the like: a style for all subtitles.
bool isDefaultStyle(std::string_view line) {
  constexpr std::string_view kWord = "{default}";
  return line.size() >= kWord.size() && ::strncasecmp(line.data(), kWord.data(), kWord.size()) == 0;
}

class Mender {
 public:
  Mender(const SourceLines& source, FrameRate known, Repair& result)
      : source_(source), lines_(source.lines()), known_(known), result_(result) {}

  void run() {
    for (const BlankLine& blank : source_.blankLines()) {
      change(Fate::kMended, blank.number,
             blank.hadControls ? "line of control bytes removed" : "line of blanks removed", {});
    }
    for (std::size_t i = 0; i < lines_.size(); ++i) {
      if (joinsNext(i)) {
        takeSplit(i++);
      } else {
        take(lines_[i]);
      }
    }
    finishDraft(std::nullopt);
  }

 private:
  void change(Fate fate, std::uint64_t line, std::string what, std::string_view text) {
    result_.changes.push_back({fate, line, std::move(what), std::string(text)});
  }

  /// Whether the numbers are divided between the line and the next one.
  [[nodiscard]] bool joinsNext(std::size_t i) const {
    if (i + 1 == lines_.size() || !isPartOfHead(lines_[i].text)) return false;
    const SourceLine& next = lines_[i + 1];
    if (!source_.isAdjacent(next) || scanLine(next.text.data()).count >= 2) return false;
    const auto alone = readHead(lines_[i].text);
    if (alone && alone->braces == 4) return false;
    const auto joined = readHead(std::string(lines_[i].text).append(next.text));
    return joined && joined->braces == 4;
  }

  void takeSplit(std::size_t i) {
    joined_.push_back(std::string(lines_[i].text).append(lines_[i + 1].text));
    Head head = *readHead(joined_.back());
    head.mends |= kSplitJoined;
    if (lines_[i].hadControls || lines_[i + 1].hadControls) head.mends |= kControlsRemoved;
    begin(lines_[i].number, joined_.back(), head);
  }

  void take(const SourceLine& line) {
    if (auto head = readHead(line.text)) {
      if (line.hadControls) head->mends |= kControlsRemoved;
      return begin(line.number, line.text, *head);
    }
    const bool belongs = draft_ && !isHeader(*draft_) && source_.isAdjacent(line) && !afterDropped_;
    if (isDefaultStyle(line.text)) {
      drop(line, "a style for all subtitles, which the plug-in does not know");
    } else if (!belongs) {
      drop(line, "no two frame numbers, and no subtitle right before it");
    } else {
      change(Fate::kMended, line.number,
             "added to the subtitle of line " + std::to_string(draft_->line), line.text);
      draft_->join(line.text);
    }
  }

  void drop(const SourceLine& line, const char* why) {
    change(Fate::kDropped, line.number, why, line.text);
    afterDropped_ = true;
  }

  [[nodiscard]] bool isHeader(const Draft& draft) const {
    RateInForce copy = rate_;
    return takeLine(copy, draft.head.first, draft.head.last, draft.wholeText());
  }

  void begin(std::uint64_t line, std::string_view original, const Head& head) {
    finishDraft(frameOf(head.first));
    draft_ = Draft{line, original, head, {}, false};
    if (head.first.size() > kLongNumber) draft_->head.mends |= kNumberShortened;
    afterDropped_ = false;
  }

  /// Writes the subtitle that was begun, now that the start of the next is known.
  void finishDraft(std::optional<std::int32_t> next) {
    if (!draft_) return;
    const Draft draft = *std::exchange(draft_, std::nullopt);
    const std::string_view text = draft.wholeText();
    if (draft.head.last.empty() && text.empty()) {
      return change(Fate::kDropped, draft.line, "no second frame number and no text",
                    draft.original);
    }
    std::string last(draft.head.last);
    std::string what = mendsText(draft.head.mends);
    if (last.empty() || (draft.endsBeforeStart() && !text.empty())) {
      const char* why = last.empty() ? "has no end: ends now" : "ended before its start: ends now";
      const FrameRate stated = rate_.rate().isSet() ? rate_.rate() : kDefaultFrameRate;
      const FrameRate rate = known_.isSet() ? known_ : stated;
      last = std::to_string(endFor(frameOf(draft.head.first), next, rate));
      if (!what.empty()) what += ", ";
      what.append(why).append(" at frame ").append(last);
    }
    if (what.empty()) {
      ++result_.kept;
    } else {
      change(Fate::kMended, draft.line, std::move(what), draft.original);
    }
    if (!takeLine(rate_, draft.head.first, last, text) && !text.empty()) ++result_.subtitles;
    const bool isLong = (draft.head.mends & kNumberShortened) != 0;
    const std::string first =
        isLong ? std::to_string(frameOf(draft.head.first)) : std::string(draft.head.first);
    result_.text.append("{").append(first).append("}{").append(last).append("}");
    result_.text.append(text).append("\n");
    result_.sources.push_back(draft.line);
  }

  const SourceLines& source_;
  const std::vector<SourceLine>& lines_;
  FrameRate known_;
  RateInForce rate_;  // as the text states it
  Repair& result_;
  std::deque<std::string> joined_;  // lines put together, which drafts view
  std::optional<Draft> draft_;
  bool afterDropped_ = false;
};

}  // namespace

void mendLines(std::string text, FrameRate known, Repair& result) {
  const SourceLines source(std::move(text), SourceLines::Controls::kRemove);
  Mender(source, known, result).run();
}

}  // namespace Ombe
