#include "host/play/marks.h"

#include <algorithm>
#include <cmath>

namespace Ombe {

std::optional<Marks::Wish> Marks::add(SyncPoint point, double rate, std::string& objection) {
  const double frames = rate == 0 ? 1 : rate / 1000;  // a millisecond
  // Each change of the rate cuts times to milliseconds; the frame shows through.
  std::vector<Mark> marks = with({std::round(point.from * frames), point.to});
  if (rate == 0) marks.erase(marks.begin(), marks.end() - 1);
  std::vector<SyncPoint> points;
  points.reserve(marks.size());
  for (const Mark& mark : marks) points.push_back({mark.frame / frames, mark.to});
  objection = objectionTo(points);
  std::optional<Wish> wish = Wish{std::nullopt, point.to - point.from};
  if (objection.empty() && points.size() == 2) {
    const auto timing = timingFor(points.front(), points.back(), rate);
    wish =
        timing ? std::optional(Wish{timing->rate, double{timing->offsetMs * 1.0}}) : std::nullopt;
    if (!timing) objection = "make a rate that cannot be set";
  }
  if (!objection.empty()) return std::nullopt;
  marks_ = std::move(marks);
  return wish;
}

void Marks::shift(double milliseconds) {
  for (Mark& mark : marks_) mark.to += milliseconds;
}

/// The new one stands last.
std::vector<Marks::Mark> Marks::with(Mark mark) const {
  std::vector<Mark> marks = marks_;
  const auto distance = [mark](const Mark& other) { return std::abs(other.frame - mark.frame); };
  const auto nearest = std::ranges::min_element(marks, {}, distance);
  const bool replaces =
      nearest != marks.end() && (marks.size() == 2 || nearest->frame == mark.frame);
  if (replaces) marks.erase(nearest);
  marks.push_back(mark);
  return marks;
}

}  // namespace Ombe
