#include "host/text/number_text.h"

#include <algorithm>
#include <limits>
#include <system_error>

namespace Ombe {
namespace {

constexpr std::uint32_t kLastTime = std::numeric_limits<std::uint32_t>::max();

/// "H:M:S", "M:S" or "S".
std::optional<std::uint64_t> parseSeconds(std::string_view text) {
  std::uint64_t total = 0;
  for (int parts = 0; parts < 3; ++parts) {
    const std::size_t colon = text.find(':');
    const auto part = parseNumber<std::uint32_t>(text.substr(0, colon));
    if (!part) return std::nullopt;
    total = total * 60 + *part;
    if (colon == std::string_view::npos) return total;
    text.remove_prefix(colon + 1);
  }
  return std::nullopt;
}

/// Up to three digits behind the point, as milliseconds.
std::optional<std::uint32_t> parseFraction(std::string_view digits) {
  if (digits.empty() || digits.size() > 3) return std::nullopt;
  return parseNumber<std::uint32_t>(std::string(digits).append(3 - digits.size(), '0'));
}

std::optional<Ratio> makeRatio(std::optional<std::uint32_t> numerator,
                               std::optional<std::uint32_t> denominator) {
  if (!numerator || !denominator) return std::nullopt;
  return Ratio{*numerator, *denominator};
}

}  // namespace

std::string timeText(std::int64_t milliseconds) {
  std::string text;
  appendTimecode(
      text, static_cast<std::uint32_t>(std::clamp<std::int64_t>(milliseconds, 0, kLastTime)), '.');
  return text;
}

std::optional<std::uint32_t> parseTime(std::string_view text) {
  const std::size_t point = text.find_first_of(".,");
  const auto seconds = parseSeconds(text.substr(0, point));
  const auto fraction =
      point == std::string_view::npos ? std::uint32_t{0} : parseFraction(text.substr(point + 1));
  if (!seconds || !fraction) return std::nullopt;
  const std::uint64_t milliseconds = *seconds * 1000 + *fraction;
  if (milliseconds > kLastTime) return std::nullopt;
  return static_cast<std::uint32_t>(milliseconds);
}

std::optional<Ratio> parseFrameRate(std::string_view text) {
  const std::size_t separator = text.find_first_of("/.");
  const std::string_view first = text.substr(0, separator);
  if (separator == std::string_view::npos) return makeRatio(parseNumber<std::uint32_t>(first), 1);
  const std::string_view second = text.substr(separator + 1);
  if (text[separator] == '/')
    return makeRatio(parseNumber<std::uint32_t>(first), parseNumber<std::uint32_t>(second));
  if (first.empty() || second.empty()) return std::nullopt;
  return makeRatio(parseNumber<std::uint32_t>(std::string(first).append(second)),
                   parseNumber<std::uint32_t>("1" + std::string(second.size(), '0')));
}

std::string countText(std::uint64_t count, const std::string& word) {
  return std::to_string(count) + " " + word + (count == 1 ? "" : "s");
}

}  // namespace Ombe
