// A subtitle with its times, which an offset may have taken around the end of 32 bits.
#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>

#include "host/session/chunk.h"

namespace Ombe {

/// One subtitle as it was delivered; times in unsigned milliseconds.
struct Subtitle {
  std::uint32_t timestamp;
  std::uint32_t duration;
  std::string_view text;
  /// A 32-bit sum, so it lies before the start for a negative duration and beyond the last time.
  [[nodiscard]] std::uint32_t end() const { return timestamp + duration; }
};

/// A delivered start in milliseconds as a sum that cannot wrap: below 0 where the offset took it
/// before the beginning.
inline std::int64_t unwrappedTime(std::uint32_t delivered, std::int32_t offsetMs) {
  const std::uint32_t own = delivered - static_cast<std::uint32_t>(offsetMs);
  return std::int64_t{own} + offsetMs;
}

/// A chunk as files and people are to have it: from 0 on when the offset has it begin before that,
/// and nothing when it has it end by then, or begin beyond the last time.
inline std::optional<Subtitle> timedSubtitle(const Chunk& chunk, std::int32_t offsetMs) {
  const std::int64_t start = unwrappedTime(chunk.timestamp(), offsetMs);
  if (start > std::int64_t{std::numeric_limits<std::uint32_t>::max()}) return std::nullopt;
  if (start >= 0) return Subtitle{chunk.timestamp(), chunk.duration(), chunk.text()};
  const std::int64_t end = start + static_cast<std::int32_t>(chunk.duration());
  if (end <= 0) return std::nullopt;
  return Subtitle{0, static_cast<std::uint32_t>(end), chunk.text()};
}

}  // namespace Ombe
