#include "microdvd/lines/frame_rate.h"

#include "microdvd/lines/number_scan.h"

namespace Ombe {
namespace {

/// Signed numbers widen with their sign, so -1 becomes the largest value.
std::uint64_t widened(long long value) { return static_cast<std::uint64_t>(value); }

std::optional<FrameRate> readInteger(const char* text) {
  int value = 0;
  if (!scanInt(text, value)) return std::nullopt;
  return FrameRate{widened(value), 1};
}

/// Takes the point out: 23.976 is 23976 over 1000. More than 19 places wrap the denominator.
std::optional<FrameRate> readDecimal(char* text, std::size_t point) {
  std::uint64_t denominator = 1;
  std::size_t at = point;
  for (; text[at + 1] != '\0'; ++at) {
    text[at] = text[at + 1];
    denominator *= 10;
  }
  text[at] = '\0';
  long long value = 0;
  const char* digits = text;
  if (!scanInteger(digits, value)) return std::nullopt;
  return FrameRate{widened(value), denominator};
}

std::optional<FrameRate> readFraction(const char* text) {
  int numerator = 0;
  int denominator = 0;
  if (!scanInt(text, numerator)) return std::nullopt;
  ++text;  // the slash
  if (!scanInt(text, denominator)) return std::nullopt;
  return FrameRate{widened(numerator), widened(denominator)};
}

}  // namespace

std::uint32_t frameToMilliseconds(std::int32_t frame, FrameRate rate) {
  const std::uint64_t unsignedFrame = static_cast<std::uint32_t>(frame);
  return static_cast<std::uint32_t>(unsignedFrame * rate.denominator * 1000 / rate.numerator);
}

HeaderClass classifyHeader(char* text, std::size_t& separator) {
  HeaderClass result = HeaderClass::kInteger;
  for (char* p = text; *p != '\0'; ++p) {
    if (isDigit(*p)) continue;
    const bool isPoint = *p == '.' || *p == ',';
    const bool isSlash = *p == '/' || *p == '\\';
    if ((!isPoint && !isSlash) || result != HeaderClass::kInteger) return HeaderClass::kNone;
    *p = isPoint ? '.' : '/';
    result = isPoint ? HeaderClass::kDecimal : HeaderClass::kFraction;
    separator = static_cast<std::size_t>(p - text);
  }
  return result;
}

HeaderReading readHeader(char* text) {
  std::size_t separator = 0;
  switch (classifyHeader(text, separator)) {
    case HeaderClass::kNone:
      return {};
    case HeaderClass::kInteger:
      return {true, readInteger(text)};
    case HeaderClass::kDecimal:
      return {true, readDecimal(text, separator)};
    case HeaderClass::kFraction:
      return {true, readFraction(text)};
  }
  return {};
}

}  // namespace Ombe
