// Headers that state another frame rate, and frame numbers that move.
#include <algorithm>
#include <limits>
#include <set>

#include "host/fix/draft.h"
#include "host/fix/repair.h"
#include "host/fix/source_lines.h"

namespace Ombe {
namespace {

constexpr std::int64_t kLastFrame = std::numeric_limits<std::int32_t>::max();

std::string movedNumber(std::string_view number, std::int64_t frames) {
  const std::int32_t frame = frameOf(number);
  if (frame < 0 || frames == 0) return std::string(number);
  return std::to_string(std::clamp<std::int64_t>(frame + frames, 0, kLastFrame));
}

/// Why a subtitle is not to be seen when its numbers have moved; null when it is.
const char* lossOf(const Head& head, std::int64_t frames) {
  const std::int64_t first = frameOf(head.first);
  const std::int64_t last = frameOf(head.last);
  if (frames == 0 || head.text.empty()) return nullptr;
  if (first + frames > kLastFrame) return "would start beyond the last frame number";
  return first + frames < 0 && last + frames <= 0 ? "would end before it can start" : nullptr;
}

std::string movedLine(std::string_view line, const Head& head, std::int64_t frames) {
  const char* const end = line.data() + line.size();
  const char* const behindFirst = head.first.data() + head.first.size();
  const char* const behindLast = head.last.data() + head.last.size();
  std::string result(line.data(), head.first.data());
  result.append(movedNumber(head.first, frames)).append(behindFirst, head.last.data());
  return result.append(movedNumber(head.last, frames)).append(behindLast, end);
}

class Retimer {
 public:
  Retimer(Repair& repair, const Retiming& timing) : repair_(repair), frames_(timing.frames) {
    for (const LineChange& change : repair.changes) changed_.insert(change.line);
    text_ = "{1}{1}" + headerText(timing.rate) + "\n";
  }

  void run() {
    const std::size_t end = repair_.text.find('\0');  // nothing is read behind it
    const SourceLines source(repair_.text.substr(0, end), SourceLines::Controls::kKeep);
    for (const SourceLine& line : source.lines()) take(line);
    if (end != std::string::npos) {
      text_.pop_back();
      text_.append(repair_.text, end);
    }
    repair_.text = std::move(text_);
  }

 private:
  void take(const SourceLine& line) {
    const auto head = readHead(line.text);
    if (head && takeLine(rate_, head->first, head->last, head->text)) return;
    // What starts below 0 has a time that no film has, and stays.
    const bool moves = head && !head->last.empty() && frameOf(head->first) >= 0;
    if (const char* loss = moves ? lossOf(*head, frames_) : nullptr) return drop(line, loss);
    text_.append(moves ? movedLine(line.text, *head, frames_) : std::string(line.text))
        .append("\n");
  }

  void drop(const SourceLine& line, const char* why) {
    const std::uint64_t source = repair_.sources.at(static_cast<std::size_t>(line.number) - 1);
    repair_.changes.push_back({Fate::kDropped, source, why, std::string(line.text)});
    if (!changed_.contains(source)) --repair_.kept;
    --repair_.subtitles;
  }

  Repair& repair_;
  const std::int64_t frames_;
  std::set<std::uint64_t> changed_;  // lines of the source of which something is told
  RateInForce rate_;
  std::string text_;
};

}  // namespace

std::string headerText(FrameRate rate) {
  std::string digits = std::to_string(rate.numerator);
  std::uint64_t power = 1;
  std::size_t places = 0;
  for (; power < rate.denominator; power *= 10) ++places;
  if (power != rate.denominator) return digits + "/" + std::to_string(rate.denominator);
  if (places == 0) return digits;
  if (digits.size() <= places) digits.insert(0, places + 1 - digits.size(), '0');
  return digits.insert(digits.size() - places, 1, '.');
}

void retime(Repair& repair, const Retiming& timing) {
  Retimer(repair, timing).run();
  std::ranges::stable_sort(repair.changes, {}, &LineChange::line);
}

}  // namespace Ombe
