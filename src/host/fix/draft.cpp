#include "host/fix/draft.h"

#include <algorithm>
#include <limits>

#include "microdvd/lines/number_scan.h"

namespace Ombe {

bool takeLine(RateInForce& rate, std::string_view first, std::string_view last,
              std::string_view text) {
  if (text.empty()) return false;
  std::string copy(text);
  return rate.take({3, frameOf(first), frameOf(last), copy.data(), copy.size()}, copy.data())
      .isHeader;
}

std::int32_t frameOf(std::string_view number) {
  const std::string digits(number);
  const char* at = digits.c_str();
  int frame = 0;
  scanInt(at, frame);
  return frame;
}

std::int32_t endFor(std::int32_t start, std::optional<std::int32_t> next, FrameRate rate) {
  constexpr double kSeconds = 5;
  constexpr std::int64_t kLast = std::numeric_limits<std::int32_t>::max();
  const auto most =
      static_cast<std::int64_t>(std::min(kSeconds * rate.perSecond(), static_cast<double>(kLast)));
  std::int64_t end = std::min(start + most, kLast);
  if (next.value_or(start) > start) end = std::min<std::int64_t>(end, *next);
  return static_cast<std::int32_t>(end);
}

void Draft::join(std::string_view more) {
  if (!isJoined) text = head.text;
  isJoined = true;
  if (!text.empty()) text += '|';
  text += more;
}

}  // namespace Ombe
