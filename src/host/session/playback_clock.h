// The media time that streams read by.
#pragma once

#include <atomic>
#include <cstdint>
#include <limits>

#include "ombe_core/time_source.h"

namespace Ombe {

/// A clock that stands where it was put; 0 at first. Any thread.
class PlaybackClock final : public TimeSource {
 public:
  /// Streams hand out what starts up to half a second ahead of the clock. From here that reaches
  /// exactly the last signed 32-bit millisecond, so every entry is due. A later clock is of no
  /// use, and wraps in a plug-in that adds in 32 bits.
  static constexpr std::int32_t kEnd = std::numeric_limits<std::int32_t>::max() - 500;

  void set(std::int32_t milliseconds) { time_.store(milliseconds, std::memory_order_relaxed); }
  std::int32_t currentTime() override { return time_.load(std::memory_order_relaxed); }

 private:
  std::atomic<std::int32_t> time_{0};
};

}  // namespace Ombe
