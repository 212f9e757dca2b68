// Times of subtitles, made those of a film.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/text/number_text.h"

namespace Ombe {

/// When a subtitle starts by its file, and when it is to start; milliseconds.
struct SyncPoint {
  double from;
  double to;
};

/// "FROM=TO", two times such as 1:20:00 and 1:22:41.5.
std::optional<SyncPoint> parseSyncPoint(const std::string& text);

/// What a person knows of a film's times. One point shifts subtitles, two stretch them as well.
struct FilmTimes {
  std::vector<SyncPoint> points = {};
  std::optional<Ratio> rate = std::nullopt;  ///< both parts are set
};

/// Why no shift and no stretch takes each point's one time to the other; empty for nothing.
std::string objectionTo(const std::vector<SyncPoint>& points);

/// The engine's two means to move subtitles.
struct Timing {
  Ratio rate;
  std::int32_t offsetMs;
};

/// The usual rates of films.
inline constexpr Ratio kUsualRates[] = {{24000, 1001}, {24, 1}, {25, 1}, {30000, 1001}, {30, 1}};

/// With which each of two points, of which there is nothing to object, is met within a millisecond,
/// when its first time is that at `rate` frames a second. A usual rate is taken where it fits. No
/// part of a rate is beyond 2^31 - 1. Nothing where rate or offset would be out of range.
std::optional<Timing> timingFor(SyncPoint first, SyncPoint second, double rate);

}  // namespace Ombe
