// One line of an MPL2 file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Ombe {

/// A subtitle as its line states it: "[12][34]first|second" is shown from 1,200 ms to 3,400 ms.
struct Mpl2Line {
  std::uint32_t startMs = 0;
  std::uint32_t endMs = 0;
  std::string text;  ///< lines separated by '\n'; a line that began with '/' in <i> and </i>
};

/// Nothing for a line of another form, and for times past the end of 32 bits. Pure.
std::optional<Mpl2Line> parseMpl2Line(std::string_view line);

/// Takes the first line that is not empty off `text`; empty when there is none left.
std::string_view takeLine(std::string_view& text);

}  // namespace Ombe
