// When an entry is to be delivered.
#pragma once

#include <cstdint>
#include <limits>

namespace Ombe {

/// Entries are handed out this many milliseconds ahead of the clock.
inline constexpr std::int32_t kReadAhead = 500;

/// A host's media time offset as whole milliseconds, truncated toward zero. A number that does not
/// fit goes to the nearer end of the range and one that is none counts as 0: never undefined.
inline std::int32_t wholeMilliseconds(double offset) {
  using Limits = std::numeric_limits<std::int32_t>;
  if (offset != offset) return 0;
  if (offset >= static_cast<double>(Limits::max())) return Limits::max();
  if (offset <= static_cast<double>(Limits::min())) return Limits::min();
  return static_cast<std::int32_t>(offset);
}

/// A time moved by an offset; the 32-bit sum wraps.
inline std::uint32_t shiftedTime(std::uint32_t time, std::int32_t offset) {
  return time + static_cast<std::uint32_t>(offset);
}

/// Whether an entry that starts at `start` is due at `now`, both as signed 32-bit milliseconds. The
/// read-ahead is added in 64 bits, so that a clock at the end of its range does not wrap.
inline bool isDue(std::uint32_t start, std::int32_t now) {
  return std::int64_t{now} + kReadAhead >= static_cast<std::int32_t>(start);
}

}  // namespace Ombe
