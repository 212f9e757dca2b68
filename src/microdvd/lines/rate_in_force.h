// The frame rate of a file while its lines are read.
#pragma once

#include "microdvd/lines/frame_rate.h"
#include "microdvd/lines/line_scan.h"

namespace Ombe {

/// The user's rate, else what a header line before the first subtitle states, else the default.
class RateInForce {
 public:
  /// `user` is unset where the user chose none.
  explicit RateInForce(FrameRate user = {}) : rate_(user) {}

  /// Unset only as long as no line needed one.
  [[nodiscard]] FrameRate rate() const { return rate_; }

  /// To be told of every line with a text, of which `text` is a copy that ends with NUL and may be
  /// changed. A header makes no subtitle, even when no rate could be read from it; behind any other
  /// line the rate is set.
  HeaderReading take(const ScannedLine& line, char* text) {
    HeaderReading reading;
    if (rate_.isSet()) return reading;
    const bool mayBeHeader =
        line.firstFrame == 1 && line.lastFrame == 1 && line.textLength < kHeaderLimit;
    if (mayBeHeader) reading = readHeader(text);
    if (reading.rate) rate_ = *reading.rate;
    if (!reading.isHeader) rate_ = kDefaultFrameRate;
    return reading;
  }

 private:
  FrameRate rate_;
};

}  // namespace Ombe
