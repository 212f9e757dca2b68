#include <tuple>

#include "host/check/passes.h"

namespace Ombe {

void checkTiming(std::vector<TimedLine>& subtitles, Findings& findings) {
  constexpr std::uint32_t kLongestUsual = 20000;  // milliseconds
  // In the order of delivery.
  std::ranges::sort(subtitles, {},
                    [](const TimedLine& line) { return std::tie(line.start, line.line); });
  const TimedLine* latest = nullptr;  // the one that ends last so far
  const auto add = [&](Kind kind, const TimedLine& now, std::uint32_t milliseconds) {
    findings.add({kind, now.line, latest == nullptr ? 0 : latest->line, milliseconds});
  };
  for (const TimedLine& now : subtitles) {
    if (now.end < now.start) {
      add(Kind::kEndBeforeStart, now, now.start - now.end);
      continue;
    }
    if (now.end - now.start > kLongestUsual) add(Kind::kLongShown, now, now.end - now.start);
    if (latest != nullptr && now.start < latest->end) {
      add(Kind::kOverlap, now, latest->end - now.start);
    }
    if (latest == nullptr || now.end > latest->end) latest = &now;
  }
}

}  // namespace Ombe
