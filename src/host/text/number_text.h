// Numbers, times and frame rates as texts.
#pragma once

#include <charconv>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "ombe_core/setting_value.h"

namespace Ombe {

/// Appended without the detour of a stream.
inline void appendNumber(std::string& out, std::uint64_t number) {
  char digits[20];
  const auto end = std::to_chars(digits, digits + sizeof digits, number);
  out.append(digits, end.ptr);
}

/// The last `digits` digits of the hexadecimal number.
inline std::string hexText(std::uint32_t number, int digits) {
  std::string text;
  while (--digits >= 0) text += "0123456789abcdef"[number >> digits * 4 & 0xF];
  return text;
}

/// "HH:MM:SS,mmm" with the given byte before the milliseconds; more hours take more digits.
inline void appendTimecode(std::string& out, std::uint32_t milliseconds, char separator) {
  char text[] = "00:00:00,000";
  const auto put = [&text](std::size_t at, std::uint32_t number) {
    text[at] = static_cast<char>('0' + number / 10);
    text[at + 1] = static_cast<char>('0' + number % 10);
  };
  const std::uint32_t seconds = milliseconds / 1000;
  const std::uint32_t hours = seconds / 3600;
  if (hours >= 100) appendNumber(out, hours / 100);
  put(0, hours % 100);
  put(3, seconds / 60 % 60);
  put(6, seconds % 60);
  text[8] = separator;
  text[9] = static_cast<char>('0' + milliseconds / 100 % 10);
  put(10, milliseconds % 100);
  out.append(text, sizeof text - 1);
}

/// The same with a point, of a time that may lie outside of 32 bits and is then put to their end.
std::string timeText(std::int64_t milliseconds);

/// All of the text as a decimal number: digits, and what else its type can have, but no plus.
template <typename T>
std::optional<T> parseNumber(std::string_view text) {
  T number{};
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

/// Milliseconds of "90", "1:30", "1:02:03.5" and the like; the parts before the last colon may have
/// any size. Nothing for another form, and beyond the last 32-bit millisecond.
std::optional<std::uint32_t> parseTime(std::string_view text);

/// "25", "23.976" (exactly 23976/1000) or "24000/1001". Zero parts are allowed, since they mean
/// something to the plug-in. Nothing for another form and for numbers that need more than 32 bits.
std::optional<Ratio> parseFrameRate(std::string_view text);

inline bool operator==(Ratio a, Ratio b) {
  return a.numerator == b.numerator && a.denominator == b.denominator;
}

inline double perSecond(Ratio rate) { return double{rate.numerator * 1.0} / rate.denominator; }

/// "1 line", "2 lines".
std::string countText(std::uint64_t count, const std::string& word);

}  // namespace Ombe
