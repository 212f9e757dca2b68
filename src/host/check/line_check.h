// What the lines of a text say of how the plug-in will take it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/check/findings.h"
#include "microdvd/lines/frame_rate.h"

namespace Ombe {

/// The rate that the times are counted with. `source` is "user", "header", "default", or "none"
/// when no line needed one.
struct RateUse {
  FrameRate rate;
  const char* source = "none";
  std::uint64_t line = 0;  ///< of the header
};

/// A subtitle as the plug-in should make it; milliseconds.
struct TimedLine {
  std::uint64_t line;
  std::uint32_t start;
  std::uint32_t end;
};

struct LineCheck {
  RateUse rate;
  std::vector<TimedLine> subtitles;  ///< in the order of the lines
};

/// Reads a text line by line as the plug-in does, but goes on behind a line of another form. `user`
/// is the user's rate, unset for none. `codePage` is what the texts get converted from, empty when
/// they are to be UTF-8 already.
LineCheck checkLines(const std::string& text, FrameRate user, const std::string& codePage,
                     Findings& findings);

/// Adds what is wrong with a line that does not read {first}{last}text.
void addBadLine(const char* line, std::uint64_t number, Findings& findings);

}  // namespace Ombe
