// A text made into one that the plug-in opens.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "microdvd/lines/frame_rate.h"

namespace Ombe {

/// What became of a line that is not as it was, or that is less than it seems.
enum class Fate {
  kMended,
  kLeft,     ///< plays, though not as it was meant
  kDropped,  ///< its text is not in the result
};

const char* fateName(Fate fate);

struct LineChange {
  Fate fate;
  std::uint64_t line;  ///< as an editor counts
  std::string what;
  std::string text;  ///< the line as it was
};

struct Repair {
  std::string text;                 ///< lines that end in LF
  std::vector<LineChange> changes;  ///< by line
  bool opened = false;              ///< the plug-in opens a text like that as it is
  std::size_t kept = 0;             ///< lines just as they were
  std::size_t subtitles = 0;

  [[nodiscard]] std::size_t count(Fate fate) const;
};

struct RepairOptions {
  FrameRate rate = {};    ///< as a person knows it; unset for what the text says
  bool thorough = false;  ///< mends also what changes how a text plays that opens as it is
};

/// The text with a header of that rate in front, and without the headers that it had. Each line
/// reads
/// "{first}{last}text"; the parts of the rate are from 1 to 2^31 - 1.
std::string withHeader(const std::string& text, FrameRate rate);

/// Mends UTF-8 text line by line. Unless `thorough`, a text that opens comes out playing just as it
/// did. What comes out opens, if it holds any line at all; mending it again changes nothing. Pure,
/// in time and memory that grow with the text.
Repair repair(std::string text, const RepairOptions& options);

}  // namespace Ombe
