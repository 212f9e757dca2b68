#include "host/check/fitted_times.h"

#include <fmt/core.h>

#include <algorithm>
#include <string_view>

#include "host/io/descriptor_io.h"
#include "host/io/failure.h"
#include "host/text/code_page.h"
#include "microdvd/lines/rate_in_force.h"

namespace Ombe {
namespace {

/// Whole lines from the beginning of the file, as the plug-in splits them.
std::string firstLines(const std::string& path, const std::string& codePage) {
  constexpr std::size_t kEnd = std::size_t{1} << 16;  // bytes; a header comes before every text
  std::string head = readFile(path, kEnd);
  if (codePage.empty() || !isKnownCodePage(codePage)) return head;
  // The end of the head may be half a character, which would refuse all of it.
  CodePageReader reader(codePage);
  for (std::size_t size = head.size(); size + 4 > head.size() && size > 0; --size) {
    if (auto text = reader.read(std::string_view(head).substr(0, size))) return std::move(*text);
  }
  return {};
}

Timing stretched(Session& session, const std::string& path, const std::vector<SyncPoint>& points) {
  const auto rate = fileRate(session, path);
  if (!rate) throw Failure(path, Step::kDeliver, "cannot be stretched: its times are no frames");
  const auto timing = timingFor(points.front(), points.back(), rate->rate.perSecond());
  if (timing) return *timing;
  throw Failure(path, Step::kDeliver,
                "cannot be stretched so: from " + rateText(*rate) +
                    " that makes a rate which the engine does not take");
}

}  // namespace

FrameRate chosenRate(const std::optional<Ratio>& rate) {
  return rate ? FrameRate{rate->numerator, rate->denominator} : FrameRate();
}

FrameRate statedRate(std::string_view text) {
  RateInForce rate;
  while (!text.empty()) {
    const std::string line(text.substr(0, text.find_first_of("\r\n")));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    const ScannedLine scanned = scanLine(line.c_str());
    if (scanned.count < 3) continue;
    std::string header(scanned.text, scanned.textLength);
    if (!rate.take(scanned, header.data()).isHeader) break;
    if (rate.rate().isSet()) return rate.rate();
  }
  return {};
}

std::optional<FileRate> fileRate(Session& session, const std::string& path) {
  constexpr std::string_view kSignature = "\uFEFF";
  if (session.container().findMediaTypeRank(toByteString("text/x-sub")) < 0) return std::nullopt;
  const std::string lines = path.empty() ? path : firstLines(path, session.signedCodePage());
  const std::size_t start = lines.starts_with(kSignature) ? kSignature.size() : 0;
  const FrameRate rate = statedRate(std::string_view(lines).substr(start));
  return FileRate{rate.isSet() ? rate : kDefaultFrameRate, rate.isSet()};
}

std::string rateText(const FileRate& rate) {
  return fmt::format("{:.6g} fps ({})", rate.rate.perSecond(),
                     rate.isStated ? "stated" : "default");
}

void fitTimes(Session& session, const std::string& path, const FilmTimes& times) {
  std::optional<Ratio> rate = times.rate;
  if (times.points.size() == 1) {
    session.host().setTimeOffset(times.points.front().to - times.points.front().from);
  } else if (times.points.size() == 2) {
    const Timing timing = stretched(session, path, times.points);
    session.host().setTimeOffset(timing.offsetMs);
    rate = timing.rate;
  }
  if (rate) session.controller().setFrameRate(*rate);
}

}  // namespace Ombe
