// The way through a text that does not open, and the subtitle that is being mended on it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "host/fix/head.h"
#include "host/fix/repair.h"
#include "microdvd/lines/rate_in_force.h"

namespace Ombe {

/// Takes a line of these numbers and this text in, once it is complete. Whether it was a header.
bool takeLine(RateInForce& rate, std::string_view first, std::string_view last,
              std::string_view text);

/// The number as the plug-in reads it.
std::int32_t frameOf(std::string_view number);

/// Where a subtitle without a usable end is to end: where the next begins (if it does later), five
/// seconds after the start at most.
std::int32_t endFor(std::int32_t start, std::optional<std::int32_t> next, FrameRate rate);

/// A subtitle until it is known what follows it.
struct Draft {
  std::uint64_t line = 0;
  std::string_view original;  ///< the whole line
  Head head;
  std::string text;  ///< where other lines go on with it; else it is the head's
  bool isJoined = false;

  [[nodiscard]] std::string_view wholeText() const { return isJoined ? text : head.text; }
  [[nodiscard]] bool endsBeforeStart() const {
    return !head.last.empty() && frameOf(head.last) < frameOf(head.first);
  }
  void join(std::string_view more);
};

/// Takes every line into the result that can be kept or mended, and tells of the others. `known` is
/// the rate as a person knows it, or unset.
void mendLines(std::string text, FrameRate known, Repair& result);

}  // namespace Ombe
