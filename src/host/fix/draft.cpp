#include "host/fix/draft.h"

#include <algorithm>
#include <limits>

#include "microdvd/lines/number_scan.h"

namespace Ombe {

bool RateFinder::isHeader(std::string_view first, std::string_view last,
                          std::string_view text) const {
  if (rate_.isSet() || text.empty() || text.size() >= kHeaderLimit) return false;
  if (frameOf(first) != 1 || frameOf(last) != 1) return false;
  std::size_t separator = 0;
  return classifyHeader(std::string(text).data(), separator) != HeaderClass::kNone;
}

bool RateFinder::take(std::string_view first, std::string_view last, std::string_view text) {
  if (isHeader(first, last, text)) {
    const HeaderReading reading = readHeader(std::string(text).data());
    if (reading.rate) rate_ = *reading.rate;
    return true;
  }
  if (!text.empty() && !rate_.isSet()) rate_ = kDefaultFrameRate;
  return false;
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
  if (next && *next > start) end = std::min<std::int64_t>(end, *next);
  return static_cast<std::int32_t>(end);
}

void Draft::join(std::string_view more) {
  if (!isJoined) text = head.text;
  isJoined = true;
  if (!text.empty()) text += '|';
  text += more;
}

}  // namespace Ombe
