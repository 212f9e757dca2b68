#include "host/session/sync.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Ombe {
namespace {

constexpr double kGreatestPart = std::numeric_limits<std::int32_t>::max();
constexpr double kMostStretch = 100;  // times; more is a slip of the keys

bool isOffset(double milliseconds) {
  return std::abs(milliseconds) <= std::numeric_limits<std::int32_t>::max();
}

/// The simplest fraction that close, relatively, to the value. Denominators grow until it is.
std::optional<Ratio> simplestRatio(double value, double tolerance) {
  if (!(value >= 2 / kGreatestPart && value <= kGreatestPart)) return std::nullopt;
  double before[] = {0, 1};
  double now[] = {1, 0};
  for (double rest = value;; rest = 1 / (rest - std::floor(rest))) {
    const double whole = std::floor(rest);
    const double next[] = {whole * now[0] + before[0], whole * now[1] + before[1]};
    if (std::max(next[0], next[1]) > kGreatestPart) break;
    std::copy(now, now + 2, before);
    std::copy(next, next + 2, now);
    if (rest == whole || std::abs(now[0] / now[1] - value) <= tolerance * value) break;
  }
  return Ratio{static_cast<std::uint32_t>(now[0]), static_cast<std::uint32_t>(now[1])};
}

}  // namespace

std::optional<SyncPoint> parseSyncPoint(const std::string& text) {
  const std::size_t sign = text.find('=');
  if (sign == std::string::npos) return std::nullopt;
  const auto from = parseTime(std::string_view(text).substr(0, sign));
  const auto to = parseTime(std::string_view(text).substr(sign + 1));
  if (!from || !to) return std::nullopt;
  return SyncPoint{double{*from * 1.0}, double{*to * 1.0}};
}

std::string objectionTo(const std::vector<SyncPoint>& points) {
  constexpr const char* kTooFar = "move subtitles by more than 596 hours";
  if (points.empty()) return {};
  if (points.size() > 2) return "are more than two";
  const SyncPoint& first = points.front();
  if (points.size() == 1) return isOffset(first.to - first.from) ? "" : kTooFar;
  const SyncPoint& second = points.back();
  if (first.from == second.from) return "tell of one time twice";
  const double stretch = (second.to - first.to) / (second.from - first.from);
  if (!(stretch > 0)) return "make the later time the earlier one, or both the same";
  if (stretch > kMostStretch || stretch < 1 / kMostStretch)
    return "stretch times more than a hundredfold";
  return isOffset(first.to - first.from * stretch) ? "" : kTooFar;
}

std::optional<Timing> timingFor(SyncPoint first, SyncPoint second, double rate) {
  constexpr double kAtLeast = 24 * 3600 * 1000.0;  // ms that no film exceeds
  constexpr double kError = 0.1;                   // ms that the rate may add by then
  const double wanted = rate * ((second.from - first.from) / (second.to - first.to));
  const auto distance = [wanted](Ratio usual) { return std::abs(perSecond(usual) - wanted); };
  std::vector rates{std::ranges::min(kUsualRates, {}, distance)};
  const double last = std::max({first.to, second.to, kAtLeast});
  if (const auto exact = simplestRatio(wanted, kError / last)) rates.push_back(*exact);
  for (const Ratio candidate : rates) {
    // As an engine's setting makes times at one rate those at another.
    const double factor =
        rate * (double{candidate.denominator * 1.0} / double{candidate.numerator * 1.0});
    const auto changed = [factor](double time) { return std::trunc(time * factor); };
    const double offset = std::round(first.to - changed(first.from));
    const auto isMet = [&](SyncPoint point) {
      return std::abs(changed(point.from) + offset - point.to) <= 1;
    };
    if (isOffset(offset) && isMet(first) && isMet(second))
      return Timing{candidate, static_cast<std::int32_t>(offset)};
  }
  return std::nullopt;
}

}  // namespace Ombe
