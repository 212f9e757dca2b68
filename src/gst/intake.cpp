// What comes in on `sink`: the bytes of a file, kept until all are there.
#include <algorithm>
#include <new>

#include "gst/element.h"

namespace Ombe {
namespace {

constexpr std::size_t kLargestFile = std::size_t{1} << 31;  // more than the plug-in takes

/// Room for a whole file at once: a string that grows touches new pages for each of its copies.
void reserve(GstPad* pad, std::string& bytes) {
  constexpr gint64 kLargestReserve = 256 << 20;
  gint64 size = 0;
  if (gst_pad_peer_query_duration(pad, GST_FORMAT_BYTES, &size) == FALSE) return;
  bytes.reserve(static_cast<std::size_t>(std::clamp<gint64>(size, 0, kLargestReserve)));
}

bool append(GstPad* pad, const GstMapInfo& map, std::string& bytes) {
  try {
    if (bytes.empty()) reserve(pad, bytes);
    bytes.append(reinterpret_cast<const char*>(map.data), map.size);
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

/// Plays nothing, and takes no more.
void giveUp(OmbeSubParse* element) {
  warn(element, kNoMemory);
  element->state->bytes = {};
  restart(element, {.flush = false}, [](ElementState& state) {
    state.complete = true;
    state.sending.mustRead = false;
  });
}

/// The bytes come anew.
void takeAnew(ElementState& state) {
  state.bytes = {};
  state.complete = false;
  state.sending.mustRead = true;
  state.sending.continueAt = GST_CLOCK_TIME_NONE;
}

/// Whatever was played before has been through, or is of no interest.
void takeNextStream(OmbeSubParse* element) {
  if (!element->state->complete) return;
  restart(element, {.flush = false}, [](ElementState& state) {
    takeAnew(state);
    state.playback = {};
    state.seqnum = GST_SEQNUM_INVALID;
  });
}

void takeSegment(ElementState& state, GstEvent* event) {
  const GstSegment* segment = nullptr;
  gst_event_parse_segment(event, &segment);
  const std::lock_guard lock(state.mutex);
  if (segment->format == GST_FORMAT_TIME && !state.complete) state.playback.setSegment(*segment);
}

}  // namespace

GstFlowReturn takeBytes(GstPad* pad, GstObject* parent, GstBuffer* buffer) {
  ElementState& state = *elementOf(parent)->state;
  GstFlowReturn result = GST_FLOW_EOS;
  GstMapInfo map;
  if (!state.complete && state.bytes.size() < kLargestFile &&
      gst_buffer_map(buffer, &map, GST_MAP_READ)) {
    if (append(pad, map, state.bytes)) result = GST_FLOW_OK;
    gst_buffer_unmap(buffer, &map);
    if (result != GST_FLOW_OK) giveUp(elementOf(parent));
  }
  gst_buffer_unref(buffer);
  return result;
}

gboolean sinkEvent(GstPad* pad, GstObject* parent, GstEvent* event) {
  OmbeSubParse* element = elementOf(parent);
  ElementState& state = *element->state;
  const GstEventType type = GST_EVENT_TYPE(event);
  if (type == GST_EVENT_EOS || type == GST_EVENT_STREAM_GROUP_DONE) {
    // A playbin sends the second for a file, since its EOS waits for the film's.
    const auto finish = [](ElementState& changed) { changed.complete = true; };
    if (!state.complete) restart(element, {.flush = false}, finish);
  } else if (type == GST_EVENT_SEGMENT) {
    takeSegment(state, event);
  } else if (type == GST_EVENT_FLUSH_STOP) {
    restart(element, {.seqnum = gst_event_get_seqnum(event)}, takeAnew);
  } else if (type != GST_EVENT_CAPS && type != GST_EVENT_GAP && type != GST_EVENT_FLUSH_START) {
    if (type == GST_EVENT_STREAM_START) takeNextStream(element);
    return gst_pad_event_default(pad, parent, event);
  }
  gst_event_unref(event);
  return TRUE;
}

}  // namespace Ombe
