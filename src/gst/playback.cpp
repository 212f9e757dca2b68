#include "gst/playback.h"

#include <algorithm>

namespace Ombe {
namespace {

std::int64_t milliseconds(GstClockTime time) {
  return static_cast<std::int64_t>(time / GST_MSECOND);
}

GstClockTime nanoseconds(std::int64_t milliseconds) {
  return static_cast<GstClockTime>(milliseconds) * GST_MSECOND;
}

}  // namespace

bool Playback::seek(GstEvent* event) {
  gdouble rate = 1;
  GstFormat format = GST_FORMAT_UNDEFINED;
  GstSeekFlags flags = GST_SEEK_FLAG_NONE;
  GstSeekType startType = GST_SEEK_TYPE_NONE;
  GstSeekType stopType = GST_SEEK_TYPE_NONE;
  gint64 start = 0;
  gint64 stop = -1;
  gst_event_parse_seek(event, &rate, &format, &flags, &startType, &start, &stopType, &stop);
  // A change of rate in place would have to be told downstream, which does it by itself.
  if (format != GST_FORMAT_TIME || (flags & GST_SEEK_FLAG_INSTANT_RATE_CHANGE) != 0) return false;
  GstSegment changed = segment_;
  gboolean update = FALSE;
  if (!gst_segment_do_seek(&changed, rate, format, flags, startType, static_cast<guint64>(start),
                           stopType, static_cast<guint64>(stop), &update)) {
    return false;
  }
  // Times are flipped about the end, which is the film's and unknown here unless the seek says it.
  if (rate < 0 && !GST_CLOCK_TIME_IS_VALID(changed.stop)) return false;
  segment_ = changed;
  return true;
}

GstSegment Playback::outgoing() const {
  GstSegment out = segment_;
  if (!isReverse()) return out;
  out.rate = -segment_.rate;
  out.applied_rate = -1.0;
  out.start = 0;
  out.stop = segment_.stop - segment_.start;
  out.time = segment_.stop;
  out.position = 0;
  return out;
}

void Playback::continueAt(const CueList& cues, GstClockTime position) {
  if (!GST_CLOCK_TIME_IS_VALID(position)) position = isReverse() ? segment_.stop : segment_.start;
  segment_.position = position;
  // A cue that starts within the last millisecond before the position still has to be met.
  next_ = isReverse() ? cues.firstStartingAt(milliseconds(position + GST_MSECOND - 1))
                      : cues.firstEndingAfter(milliseconds(position));
}

std::optional<Piece> Playback::take(const CueList& cues) {
  return isReverse() ? takeReverse(cues) : takeForward(cues);
}

std::optional<Piece> Playback::takeForward(const CueList& cues) {
  const Cue* cue = next_ < cues.cues().size() ? &cues.cues()[next_] : nullptr;
  GstClockTime start = segment_.stop;  // without one the largest time
  if (cue != nullptr) start = std::min(start, std::max(nanoseconds(cue->start), segment_.start));
  if (!GST_CLOCK_TIME_IS_VALID(start)) return std::nullopt;
  if (segment_.position < start) {
    const Piece gap{segment_.position, start, nullptr};
    segment_.position = start;
    return gap;
  }
  if (start == segment_.stop) return std::nullopt;
  ++next_;
  segment_.position = std::min(nanoseconds(cue->end), segment_.stop);
  return Piece{start, segment_.position, cue};
}

std::optional<Piece> Playback::takeReverse(const CueList& cues) {
  const Cue* cue = next_ > 0 ? &cues.cues()[next_ - 1] : nullptr;
  GstClockTime end = segment_.start;
  if (cue != nullptr) end = std::max(end, std::min(nanoseconds(cue->end), segment_.stop));
  const auto flipped = [this](GstClockTime time) { return segment_.stop - time; };
  if (segment_.position > end) {
    const Piece gap{flipped(segment_.position), flipped(end), nullptr};
    segment_.position = end;
    return gap;
  }
  if (end == segment_.start) return std::nullopt;
  --next_;
  segment_.position = std::max(nanoseconds(cue->start), segment_.start);
  return Piece{flipped(end), flipped(segment_.position), cue};
}

}  // namespace Ombe
