#include "host/check/fitted_times.h"

#include "host/check/stated_rate.h"
#include "host/io/failure.h"

namespace Ombe {
namespace {

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
