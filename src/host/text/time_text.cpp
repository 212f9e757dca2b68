#include "host/text/time_text.h"

#include <limits>

namespace Ombe {
namespace {

constexpr std::uint64_t kEnd = std::numeric_limits<std::uint32_t>::max();

bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// Up to three digits behind the point, as milliseconds.
std::optional<std::uint64_t> parseFraction(std::string_view digits) {
  if (digits.empty() || digits.size() > 3) return std::nullopt;
  std::uint64_t milliseconds = 0;
  for (std::size_t i = 0; i < 3; ++i) {
    const char c = i < digits.size() ? digits[i] : '0';
    if (!isDigit(c)) return std::nullopt;
    milliseconds = milliseconds * 10 + static_cast<std::uint64_t>(c - '0');
  }
  return milliseconds;
}

/// "H:M:S", "M:S" or "S".
std::optional<std::uint64_t> parseSeconds(std::string_view text) {
  std::uint64_t total = 0;
  std::uint64_t part = 0;
  int colons = 0;
  bool afterDigit = false;
  for (const char c : text) {
    if (isDigit(c)) {
      part = part * 10 + static_cast<std::uint64_t>(c - '0');
    } else if (c == ':' && afterDigit && ++colons <= 2) {
      total = (total + part) * 60;
      part = 0;
    } else {
      return std::nullopt;
    }
    if (total + part > kEnd) return std::nullopt;
    afterDigit = isDigit(c);
  }
  if (!afterDigit) return std::nullopt;
  return total + part;
}

}  // namespace

std::optional<std::uint32_t> parseTime(std::string_view text) {
  const std::size_t point = text.find_first_of(".,");
  const auto seconds = parseSeconds(text.substr(0, point));
  const auto fraction =
      point == std::string_view::npos ? std::uint64_t{0} : parseFraction(text.substr(point + 1));
  if (!seconds || !fraction || *seconds * 1000 + *fraction > kEnd) return std::nullopt;
  return static_cast<std::uint32_t>(*seconds * 1000 + *fraction);
}

}  // namespace Ombe
