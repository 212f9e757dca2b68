// Decimal integers as scanf reads them.
#pragma once

#include <charconv>
#include <limits>
#include <system_error>

namespace Ombe {

/// Blanks as scanf skips them before a number, in the C locale.
inline bool isScanBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

inline bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// Reads what a "%d" conversion reads: blanks, a sign, digits. A number outside `Integer` stays at
/// the end of its range. On success stores the number and moves `at` behind it; without any digit
/// answers false.
template <typename Integer>
bool scanInteger(const char*& at, Integer& value) {
  using Limits = std::numeric_limits<Integer>;
  const char* start = at;
  while (isScanBlank(*start)) ++start;
  const bool isNegative = *start == '-';
  const char* end = *start == '-' || *start == '+' ? start + 1 : start;
  if (!isDigit(*end)) return false;
  if (!isNegative) start = end;  // from_chars knows no plus sign
  while (isDigit(*end)) ++end;
  if (std::from_chars(start, end, value).ec == std::errc::result_out_of_range) {
    value = isNegative ? Limits::min() : Limits::max();
  }
  at = end;
  return true;
}

/// "%d" itself: the platform's scanf reads into a long, stops at its ends, and stores the low 32
/// bits.
inline bool scanInt(const char*& at, int& value) {
  long wide = 0;
  if (!scanInteger(at, wide)) return false;
  value = static_cast<int>(wide);
  return true;
}

}  // namespace Ombe
