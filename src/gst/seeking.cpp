// Going somewhere else: seeks, and settings that change while playing.
#include "gst/element.h"

namespace Ombe {
namespace {

void pushFlushStart(OmbeSubParse* element, guint32 seqnum) {
  gst_pad_push_event(element->src, numbered(gst_event_new_flush_start(), seqnum));
}

/// That of the whole pipeline: what this element has sent lies ahead of what is seen.
GstClockTime seenPosition(OmbeSubParse* element) {
  auto* top = GST_OBJECT_CAST(gst_object_ref(element));
  while (GstObject* parent = gst_object_get_parent(top)) {
    gst_object_unref(top);
    top = parent;
  }
  gint64 position = -1;
  if (GST_IS_PIPELINE(top)) {
    gst_element_query_position(GST_ELEMENT_CAST(top), GST_FORMAT_TIME, &position);
  }
  gst_object_unref(top);
  return position < 0 ? GST_CLOCK_TIME_NONE : static_cast<GstClockTime>(position);
}

}  // namespace

void restart(OmbeSubParse* element, const Restart& how,
             const std::function<void(ElementState&)>& change) {
  ElementState& state = *element->state;
  std::unique_lock restarting(state.restarting, std::try_to_lock);
  if (!restarting.owns_lock()) {
    // The other may wait for a push that only a flush ends.
    if (how.flush) pushFlushStart(element, how.seqnum);
    restarting.lock();
  }
  if (how.flush) pushFlushStart(element, how.seqnum);
  gst_pad_pause_task(element->src);  // returns when the task stands still
  GST_PAD_STREAM_LOCK(element->src);
  {
    const std::lock_guard lock(state.mutex);
    change(state);
    state.sending.mustSegment = true;
  }
  GST_PAD_STREAM_UNLOCK(element->src);
  if (how.flush) {
    GstEvent* event = gst_event_new_flush_stop(how.resetTime);
    gst_pad_push_event(element->src, numbered(event, how.seqnum));
  }
  if (state.complete && gst_pad_is_active(element->src)) {
    gst_pad_start_task(element->src, pushNext, element, nullptr);
  }
}

gboolean stop(OmbeSubParse* element) {
  const std::lock_guard restarting(element->state->restarting);
  return gst_pad_stop_task(element->src);
}

gboolean seek(OmbeSubParse* element, GstEvent* event) {
  GstSeekFlags flags = GST_SEEK_FLAG_NONE;
  gst_event_parse_seek(event, nullptr, nullptr, &flags, nullptr, nullptr, nullptr, nullptr);
  const guint32 seqnum = gst_event_get_seqnum(event);
  bool done = false;
  {
    const std::lock_guard lock(element->state->mutex);
    done = Playback(element->state->playback).seek(event);
  }
  const auto change = [event, seqnum](ElementState& state) {
    if (!state.playback.seek(event)) return;  // in the light of another seek meanwhile
    state.seqnum = seqnum;
    state.sending.continueAt = GST_CLOCK_TIME_NONE;
  };
  const bool isFlushing = (flags & GST_SEEK_FLAG_FLUSH) != 0;
  if (done) restart(element, {.flush = isFlushing, .seqnum = seqnum}, change);
  GST_DEBUG_OBJECT(element, "seek %s: %" GST_PTR_FORMAT, done ? "done" : "refused",
                   static_cast<void*>(event));
  gst_event_unref(event);
  return done;
}

void settingsChanged(OmbeSubParse* element) {
  ElementState& state = *element->state;
  {
    const std::lock_guard lock(state.mutex);
    if (!state.complete) return;  // the first reading is still to come
  }
  const GstClockTime seen = seenPosition(element);
  restart(element, {.resetTime = false, .seqnum = gst_util_seqnum_next()},
          [seen](ElementState& changed) {
            if (!changed.complete) return;  // the element was stopped meanwhile
            changed.sending.mustRead = true;
            changed.sending.continueAt = seen;
          });
}

}  // namespace Ombe
