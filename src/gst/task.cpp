// What the element's own thread does: read once all is there, then push cue after cue, held back by
// whoever takes them.
#include <exception>
#include <new>

#include "gst/element.h"
#include "gst/pango_markup.h"

namespace Ombe {
namespace {

void read(OmbeSubParse* element) {
  ElementState& state = *element->state;
  ReadingSettings settings;
  {
    const std::lock_guard lock(state.mutex);
    settings = state.settings;
  }
  CueList& cues = state.sending.cues;
  cues = {};
  state.sending.mustRead = false;
  try {
    cues = readCues(state.bytes, settings,
                    [element](const std::string& text) { warn(element, text.c_str()); });
    GST_INFO_OBJECT(element, "%zu cues", cues.cues().size());
  } catch (const std::bad_alloc&) {
    warn(element, kNoMemory);
  } catch (const std::exception& failure) {
    warn(element, failure.what());
  }
}

void begin(OmbeSubParse* element) {
  GstCaps* caps = gst_pad_get_pad_template_caps(element->src);
  gst_pad_push_event(element->src, gst_event_new_caps(caps));
  gst_caps_unref(caps);
}

/// Once only: a tag passes downstream to where a flush of the film may stop it, and a sticky event
/// that fails makes the next buffer fail.
void describe(OmbeSubParse* element) {
  GstTagList* tags = gst_tag_list_new(GST_TAG_SUBTITLE_CODEC, "MicroDVD", nullptr);
  gst_pad_push_event(element->src, gst_event_new_tag(tags));
}

void sendSegment(OmbeSubParse* element) {
  ElementState& state = *element->state;
  ElementState::Sending& sending = state.sending;
  sending.mustSegment = false;
  if (sending.mustBegin) begin(element);
  GstSegment segment{};
  guint32 seqnum = GST_SEQNUM_INVALID;
  {
    const std::lock_guard lock(state.mutex);
    state.playback.continueAt(sending.cues, sending.continueAt);
    segment = state.playback.outgoing();
    seqnum = state.seqnum;
  }
  gst_pad_push_event(element->src, numbered(gst_event_new_segment(&segment), seqnum));
  if (sending.mustBegin) describe(element);
  sending.mustBegin = false;
}

GstBuffer* bufferOf(const Piece& piece, const CueList& cues, ColorOrder order) {
  std::string text;
  for (const std::uint32_t shown : cues.shown(*piece.cue)) {
    const std::size_t before = text.size();
    if (before > 0) text += '\n';
    const std::size_t start = text.size();
    appendPangoMarkup(cues.text(shown), order, text);
    if (text.size() == start) text.resize(before);  // no line for a text of tags alone
  }
  // The NUL behind the text is there for those who look for it, and not counted.
  GstBuffer* buffer = gst_buffer_new_memdup(text.c_str(), text.size() + 1);
  gst_buffer_set_size(buffer, static_cast<gssize>(text.size()));
  GST_BUFFER_PTS(buffer) = piece.start;
  GST_BUFFER_DURATION(buffer) = piece.end - piece.start;
  return buffer;
}

void end(OmbeSubParse* element, const GstSegment& segment, guint32 seqnum) {
  gst_pad_pause_task(element->src);
  if (!GST_CLOCK_TIME_IS_VALID(segment.stop) && element->state->sending.cues.cues().empty()) {
    // In a playbin3 the film would wait for a stream of which nothing comes but its end.
    gst_pad_push_event(element->src, gst_event_new_gap(segment.start, GST_CLOCK_TIME_NONE));
  }
  if ((segment.flags & GST_SEGMENT_FLAG_SEGMENT) == 0) {
    gst_pad_push_event(element->src, numbered(gst_event_new_eos(), seqnum));
    return;
  }
  const auto position = static_cast<gint64>(segment.rate < 0 ? segment.start : segment.position);
  GstMessage* message =
      gst_message_new_segment_done(GST_OBJECT_CAST(element), GST_FORMAT_TIME, position);
  if (seqnum != GST_SEQNUM_INVALID) gst_message_set_seqnum(message, seqnum);
  gst_element_post_message(GST_ELEMENT_CAST(element), message);
  gst_pad_push_event(element->src,
                     numbered(gst_event_new_segment_done(GST_FORMAT_TIME, position), seqnum));
}

void fail(OmbeSubParse* element, GstFlowReturn flow) {
  GST_DEBUG_OBJECT(element, "pausing: %s", gst_flow_get_name(flow));
  gst_pad_pause_task(element->src);
  if (flow == GST_FLOW_FLUSHING) return;
  if (flow != GST_FLOW_EOS) GST_ELEMENT_FLOW_ERROR(element, flow);
  gst_pad_push_event(element->src, gst_event_new_eos());
}

}  // namespace

void warn(OmbeSubParse* element, const char* text) {
  GST_ELEMENT_WARNING(element, STREAM, DECODE, ("MicroDVD subtitles: %s", text), (nullptr));
}

void pushNext(gpointer parent) {
  OmbeSubParse* element = elementOf(parent);
  ElementState& state = *element->state;
  const ElementState::Sending& sending = state.sending;
  if (sending.mustRead) read(element);
  if (sending.mustSegment) sendSegment(element);
  std::optional<Piece> piece;
  GstSegment segment{};
  guint32 seqnum = GST_SEQNUM_INVALID;
  ColorOrder order = ColorOrder::kRgb;
  {
    const std::lock_guard lock(state.mutex);
    piece = state.playback.take(sending.cues);
    segment = state.playback.segment();
    seqnum = state.seqnum;
    order = state.settings.colorOrder;
  }
  if (!piece) {
    end(element, segment, seqnum);
  } else if (piece->cue == nullptr) {
    gst_pad_push_event(element->src, gst_event_new_gap(piece->start, piece->end - piece->start));
  } else {
    const GstFlowReturn flow = gst_pad_push(element->src, bufferOf(*piece, sending.cues, order));
    if (flow != GST_FLOW_OK) fail(element, flow);
  }
}

}  // namespace Ombe
