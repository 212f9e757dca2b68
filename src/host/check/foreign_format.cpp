#include "host/check/foreign_format.h"

#include <algorithm>

namespace Ombe {
namespace {

using std::string_view_literals::operator""sv;

constexpr std::size_t kHead = 1024;  // bytes that tell

/// Text in 16 or 32 bits a character has a zero in every other byte or more, if it is Latin.
bool isWide(std::string_view head) {
  return std::count(head.begin(), head.end(), '\0') >= static_cast<std::ptrdiff_t>(head.size() / 4);
}

}  // namespace

std::string_view foreignFormat(std::string_view bytes) {
  const std::string_view head = bytes.substr(0, kHead);
  if (head.empty()) return "is empty";
  if (head.starts_with("\x00\x00\x01\xBA"sv)) {
    return "binary VobSub (an MPEG program stream): pictures, not text";
  }
  if (isWide(head)) {
    return "looks like UTF-16 or UTF-32 without a signature: save it as UTF-8, or with a signature";
  }
  if (head.find("WEBVTT") < 4) return "looks like WebVTT, not MicroDVD";
  if (head.find("[Script Info]") < 4) return "looks like SubStation Alpha, not MicroDVD";
  if (head.find(" --> ") != std::string_view::npos) return "looks like SubRip, not MicroDVD";
  return {};
}

}  // namespace Ombe
