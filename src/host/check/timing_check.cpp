#include "host/check/timing_check.h"

#include <algorithm>
#include <string>

#include "host/text/number_text.h"

namespace Ombe {
namespace {

constexpr std::uint32_t kLong = 20000;  // milliseconds

std::string secondsText(std::uint32_t milliseconds) {
  std::string text = std::to_string(milliseconds / 1000) + ".";
  return text + static_cast<char>('0' + milliseconds / 100 % 10) + " s";
}

void add(Findings& findings, const char* kind, std::uint64_t line, std::string message) {
  findings.add({Severity::kWarning, kind, line, std::move(message), {}});
}

}  // namespace

void checkTiming(std::vector<TimedLine> subtitles, Findings& findings) {
  // In the order of delivery.
  std::stable_sort(subtitles.begin(), subtitles.end(),
                   [](const TimedLine& a, const TimedLine& b) { return a.start < b.start; });
  const TimedLine* latest = nullptr;  // the one that ends last so far
  for (const TimedLine& now : subtitles) {
    if (now.end < now.start) {
      add(findings, "end-before-start", now.line,
          "ends " + secondsText(now.start - now.end) + " before it starts");
      continue;
    }
    if (now.end - now.start > kLong) {
      add(findings, "long", now.line, "stays for " + secondsText(now.end - now.start));
    }
    if (latest != nullptr && now.start < latest->end) {
      add(findings, "overlap", now.line,
          "begins " + secondsText(latest->end - now.start) + " before the subtitle of line " +
              std::to_string(latest->line) + " ends");
    }
    if (latest == nullptr || now.end > latest->end) latest = &now;
  }
}

}  // namespace Ombe
