// The two frame numbers that a line begins with, as people get them wrong.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Ombe {

/// What was done to a line, as bits of one number.
enum Mend : std::uint32_t {
  kBlanksRemoved = 1U << 0U,
  kOpeningAdded = 1U << 1U,
  kClosingAdded = 1U << 2U,
  kDoubledRemoved = 1U << 3U,
  kSquareReplaced = 1U << 4U,
  kSeparatorRemoved = 1U << 5U,
  kControlsRemoved = 1U << 6U,
  kSplitJoined = 1U << 7U,
  kNumberShortened = 1U << 8U,
};

/// "opening brace added, blanks removed".
std::string mendsText(std::uint32_t mends);

/// The numbers keep their signs and digits just as they were written. Views into the line.
struct Head {
  std::string_view first;
  std::string_view last;  ///< empty when it is missing
  std::string_view text;
  std::uint32_t mends = 0;  ///< what it takes to read "{first}{last}text"
  int braces = 0;           ///< kinds of the four that are there
};

/// Reads a line that begins with two numbers of which most braces are there, or with one in braces;
/// nothing for any other.
std::optional<Head> readHead(std::string_view line);

/// Whether a line is made of nothing but what numbers and braces are made of.
bool isPartOfHead(std::string_view line);

}  // namespace Ombe
