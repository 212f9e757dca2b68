#include "ombe_core/string_tools.h"

#include <cstddef>

namespace Ombe {
namespace {

constexpr wchar_t kEscapeBase = 0xDC00;

/// Length of the sequence that a lead byte begins; 0 when it begins none.
std::size_t sequenceLength(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead <= 0xDF) return 2;
  if (lead >= 0xE0 && lead <= 0xEF) return 3;
  if (lead >= 0xF0 && lead <= 0xF4) return 4;
  return 0;
}

/// The code point of the well-formed sequence at `at`, or none (0 as length).
std::size_t decode(const StringTools::UString& bytes, std::size_t at, wchar_t& point) {
  const std::size_t length = sequenceLength(bytes[at]);
  if (length == 0 || bytes.size() - at < length) return 0;
  point = length == 1 ? bytes[at] : bytes[at] & (0xFF >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    if ((bytes[at + i] & 0xC0) != 0x80) return 0;
    point = (point << 6) | (bytes[at + i] & 0x3F);
  }
  constexpr wchar_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool surrogate = point >= 0xD800 && point <= 0xDFFF;
  return point < kSmallest[length] || surrogate || point > 0x10FFFF ? 0 : length;
}

void encode(wchar_t point, std::string& out) {
  if (point < 0x80) {
    out += static_cast<char>(point);
  } else if (point >= kEscapeBase && point < kEscapeBase + 0x100) {
    out += static_cast<char>(point - kEscapeBase);
  } else if (point < 0x800) {
    out += static_cast<char>(0xC0 | (point >> 6));
    out += static_cast<char>(0x80 | (point & 0x3F));
  } else if (point < 0x10000) {
    out += static_cast<char>(0xE0 | (point >> 12));
    out += static_cast<char>(0x80 | ((point >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (point & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (point >> 18));
    out += static_cast<char>(0x80 | ((point >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((point >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (point & 0x3F));
  }
}

}  // namespace

std::wstring StringTools::uStringToWstring(const UString& bytes) {
  std::wstring out;
  out.reserve(bytes.size());
  for (std::size_t at = 0; at < bytes.size();) {
    wchar_t point = 0;
    const std::size_t length = decode(bytes, at, point);
    out += length == 0 ? static_cast<wchar_t>(kEscapeBase + bytes[at]) : point;
    at += length == 0 ? 1 : length;
  }
  return out;
}

std::string StringTools::wstringToBytes(const std::wstring& text) {
  std::string out;
  out.reserve(text.size());
  for (const wchar_t point : text) encode(point, out);
  return out;
}

}  // namespace Ombe
