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
  std::vector<std::uint64_t> sources;  ///< of each line of the text, where it begins by itself

  [[nodiscard]] std::size_t count(Fate fate) const;
};

struct RepairOptions {
  FrameRate rate = {};    ///< as a person knows it; unset for what the text says
  bool thorough = false;  ///< mends also what changes how a text plays that opens as it is
};

/// Mends UTF-8 text line by line. Unless `thorough`, a text that opens comes out playing just as it
/// did. What comes out opens, if it holds any line at all; mending it again changes nothing. Pure,
/// in time and memory that grow with the text.
Repair repair(std::string text, const RepairOptions& options);

/// A rate for the header, and by how much each frame number is to grow.
struct Retiming {
  FrameRate rate;
  std::int64_t frames = 0;
};

/// "25", "23.976" where the denominator is a power of ten, else "24000/1001".
std::string headerText(FrameRate rate);

/// Puts a header of the rate in front of the text, takes out those that it had, and moves its frame
/// numbers. One that would be below 0 becomes 0; a subtitle of which nothing would be left, or that
/// would start beyond the last number, is dropped.
void retime(Repair& repair, const Retiming& timing);

}  // namespace Ombe
