#include "host/session/frame_rate.h"

#include <charconv>
#include <cstdint>
#include <string>
#include <system_error>

namespace Ombe {
namespace {

/// Digits only, and at least one.
std::optional<std::uint32_t> parseNumber(std::string_view digits) {
  std::uint32_t value = 0;
  const char* end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, value);
  if (error != std::errc() || stop != end) return std::nullopt;
  return value;
}

std::optional<Ratio> parseDecimal(std::string_view whole, std::string_view fraction) {
  if (whole.empty() || fraction.empty()) return std::nullopt;
  const auto numerator = parseNumber(std::string(whole).append(fraction));
  const auto denominator = parseNumber("1" + std::string(fraction.size(), '0'));
  if (!numerator || !denominator) return std::nullopt;
  return Ratio{*numerator, *denominator};
}

}  // namespace

std::optional<Ratio> parseFrameRate(std::string_view text) {
  const std::size_t separator = text.find_first_of("/.");
  const std::string_view first = text.substr(0, separator);
  if (separator != std::string_view::npos && text[separator] == '.') {
    return parseDecimal(first, text.substr(separator + 1));
  }
  const auto numerator = parseNumber(first);
  const auto denominator =
      parseNumber(separator == std::string_view::npos ? "1" : text.substr(separator + 1));
  if (!numerator || !denominator) return std::nullopt;
  return Ratio{*numerator, *denominator};
}

}  // namespace Ombe
