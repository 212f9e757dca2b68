// Where playback is among the cues, and in which direction.
#pragma once

#include <gst/gst.h>

#include <optional>

#include "gst/cue_list.h"

namespace Ombe {

/// What goes downstream next: a cue, or time without any.
struct Piece {
  GstClockTime start;
  GstClockTime end;
  const Cue* cue;  ///< the list's; null for a gap
};

/// Walks through cues along a segment in stream time, whose rate may be negative. What it gives is
/// in the time of `outgoing`. One thread at a time.
class Playback {
 public:
  Playback() { gst_segment_init(&segment_, GST_FORMAT_TIME); }

  [[nodiscard]] const GstSegment& segment() const { return segment_; }
  /// From its start on; in reverse, from its end on.
  void setSegment(const GstSegment& segment) { segment_ = segment; }
  /// False for a seek that cannot be.
  bool seek(GstEvent* event);

  /// The segment that is announced: in reverse with flipped times, a positive rate and the applied
  /// rate -1, since renderers compare running times, and a text that ends before it starts is over
  /// to them.
  [[nodiscard]] GstSegment outgoing() const;

  /// Goes on from there; from where the segment says, unless valid.
  void continueAt(const CueList& cues, GstClockTime position);
  /// Nothing when the segment is through.
  std::optional<Piece> take(const CueList& cues);

 private:
  [[nodiscard]] bool isReverse() const { return segment_.rate < 0; }
  std::optional<Piece> takeForward(const CueList& cues);
  std::optional<Piece> takeReverse(const CueList& cues);

  GstSegment segment_{};
  std::size_t next_ = 0;  // forward: the next cue; in reverse: the one behind it
};

}  // namespace Ombe
