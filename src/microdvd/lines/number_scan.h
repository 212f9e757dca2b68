// Decimal integers as scanf reads them.
#pragma once

#include <limits>

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
  const char* p = at;
  while (isScanBlank(*p)) ++p;
  const bool isNegative = *p == '-';
  if (*p == '-' || *p == '+') ++p;
  if (!isDigit(*p)) return false;
  // Counted downward, since the negative range is the longer one.
  Integer sum = 0;
  // So many digits always fit.
  for (int unchecked = Limits::digits10; unchecked > 0 && isDigit(*p); --unchecked, ++p) {
    sum = sum * 10 - (*p - '0');
  }
  bool isTooLarge = false;
  for (; isDigit(*p); ++p) {
    isTooLarge = isTooLarge || __builtin_mul_overflow(sum, Integer{10}, &sum) ||
                 __builtin_sub_overflow(sum, static_cast<Integer>(*p - '0'), &sum);
  }
  if (!isNegative) isTooLarge = isTooLarge || sum == Limits::min();
  at = p;
  if (isTooLarge) {
    value = isNegative ? Limits::min() : Limits::max();
  } else {
    value = isNegative ? sum : static_cast<Integer>(-sum);
  }
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
