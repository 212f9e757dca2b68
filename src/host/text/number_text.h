// Numbers appended to a text, without the detour of a stream.
#pragma once

#include <charconv>
#include <cstdint>
#include <string>

namespace Ombe {

inline void appendNumber(std::string& out, std::uint64_t number) {
  char digits[20];
  const auto end = std::to_chars(digits, digits + sizeof digits, number);
  out.append(digits, end.ptr);
}

/// "HH:MM:SS,mmm" with the given byte before the milliseconds; more hours take more digits.
inline void appendTimecode(std::string& out, std::uint32_t milliseconds, char separator) {
  const auto pair = [&out](std::uint32_t number) {
    out += static_cast<char>('0' + number / 10);
    out += static_cast<char>('0' + number % 10);
  };
  const std::uint32_t seconds = milliseconds / 1000;
  const std::uint32_t hours = seconds / 3600;
  if (hours < 100) {
    pair(hours);
  } else {
    appendNumber(out, hours);
  }
  out += ':';
  pair(seconds / 60 % 60);
  out += ':';
  pair(seconds % 60);
  out += separator;
  out += static_cast<char>('0' + milliseconds / 100 % 10);
  pair(milliseconds % 100);
}

}  // namespace Ombe
