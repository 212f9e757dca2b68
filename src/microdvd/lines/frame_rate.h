// Frame rates and the times that they give.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

namespace Ombe {

/// Frames per second as numerator over denominator; unset while either is 0.
struct FrameRate {
  std::uint64_t numerator = 0;
  std::uint64_t denominator = 0;

  [[nodiscard]] bool isSet() const { return numerator != 0 && denominator != 0; }
  /// The same pair of numbers: 50/2 is another rate than 25/1.
  bool operator==(const FrameRate&) const = default;

  [[nodiscard]] double perSecond() const {
    return static_cast<double>(numerator) / static_cast<double>(denominator);
  }
};

/// What a file without a stated rate is taken to have, about 23.976.
inline constexpr FrameRate kDefaultFrameRate{24000, 1001};

/// Start of a frame in milliseconds. The frame's 32 bits count as unsigned; products wrap at 2^64
/// and the quotient at 2^32. The rate is set.
std::uint32_t frameToMilliseconds(std::int32_t frame, FrameRate rate);

/// Forms of a header text, by how the rate stands in it.
enum class HeaderClass { kNone, kInteger, kDecimal, kFraction };

/// Tells the form of a NUL-terminated text and rewrites it in place: a "," with nothing but digits
/// before it becomes ".", such a backslash "/", also when the text turns out to be no header
/// further on. `separator` receives the index of the point or slash of a decimal or fraction.
HeaderClass classifyHeader(char* text, std::size_t& separator);

/// A header text is shorter than this, in bytes.
inline constexpr std::size_t kHeaderLimit = 100;

/// What came of a text that may be a header.
struct HeaderReading {
  bool isHeader = false;          ///< the text is a number, usable or not
  std::optional<FrameRate> rate;  ///< as stated; may have a part that is 0
};

/// Classifies and reads a header text, which is changed in place.
HeaderReading readHeader(char* text);

}  // namespace Ombe
