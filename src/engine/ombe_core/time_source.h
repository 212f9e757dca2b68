// The engine's clock.
#pragma once

#include <cstdint>

#include "ombe_core/export.h"

namespace Ombe {

/// Owned by the engine; outlives the streams that it was given to.
class OMBE_API TimeSource {
 public:
  TimeSource() = default;
  TimeSource(const TimeSource&) = delete;
  TimeSource& operator=(const TimeSource&) = delete;
  virtual ~TimeSource();  // slots 0 and 1

  /// Slot 2. Current media time in milliseconds, negative while none is known. Any thread. A stream
  /// asks while its container holds its lock, and up to twice a read; it may be released from
  /// within, but is destroyed after the read.
  virtual std::int32_t currentTime() = 0;
};

}  // namespace Ombe
