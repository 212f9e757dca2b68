// The element `ombesubparse`: takes the bytes of a MicroDVD file on `sink`, and when all are there
// gives its cues as timed Pango markup on `src`, from a task of its own.
#pragma once

#include <gst/gst.h>

#include <functional>
#include <mutex>
#include <optional>
#include <string>

#include "gst/cue_list.h"
#include "gst/playback.h"
#include "gst/reading.h"
#include "host/session/plugin_library.h"

GST_DEBUG_CATEGORY_EXTERN(ombe_debug);
#define GST_CAT_DEFAULT ombe_debug

namespace Ombe {

/// What an element remembers. The members say who may touch them.
struct ElementState {
  /// One restart or stop at a time; taken before the stream lock of `src`.
  std::mutex restarting;

  /// Guards what follows up to `playback`. Nothing is called with it held.
  std::mutex mutex;
  ReadingSettings settings;
  bool complete = false;  ///< all bytes are there
  Playback playback;
  guint32 seqnum = GST_SEQNUM_INVALID;  ///< of the seek that the segment comes from

  /// The streaming thread of `sink` may use it until `complete`, then the task's.
  std::string bytes;

  /// Whoever holds the stream lock of `src`, as the task does, may use it.
  struct Sending {
    CueList cues;
    bool mustRead = true;     ///< the cues are not those of bytes and settings
    bool mustBegin = true;    ///< nothing was sent
    bool mustSegment = true;  ///< no segment was sent since the last flush
    GstClockTime continueAt = GST_CLOCK_TIME_NONE;
  };
  Sending sending;

  /// Keeps the plug-in loaded from READY on.
  std::optional<PluginLibrary> library;
};

}  // namespace Ombe

struct OmbeSubParse {
  GstElement parent;
  GstPad* sink;
  GstPad* src;
  Ombe::ElementState* state;
};

namespace Ombe {

/// Registers the class on the first call. Any thread.
GType elementType();

inline OmbeSubParse* elementOf(gpointer object) { return static_cast<OmbeSubParse*>(object); }

/// The event, which now comes from the seek of that number, if from any.
inline GstEvent* numbered(GstEvent* event, guint32 seqnum) {
  if (seqnum != GST_SEQNUM_INVALID) gst_event_set_seqnum(event, seqnum);
  return event;
}

inline constexpr char kNoMemory[] = "needs more memory than there is";

/// The functions of `sink`.
GstFlowReturn takeBytes(GstPad* pad, GstObject* element, GstBuffer* buffer);
gboolean sinkEvent(GstPad* pad, GstObject* element, GstEvent* event);

/// Subtitles that cannot be had leave the film playing.
void warn(OmbeSubParse* element, const char* text);

/// The function of the task.
void pushNext(gpointer element);

/// Stops what is being played, makes `change` while the task stands still, and goes on. Any thread.
/// With `flush`, what was sent already is thrown away downstream.
struct Restart {
  bool flush = true;
  bool resetTime = true;  ///< running time starts anew
  guint32 seqnum = GST_SEQNUM_INVALID;
};
void restart(OmbeSubParse* element, const Restart& how,
             const std::function<void(ElementState&)>& change);

/// Ends the task until the next start. For the deactivation of `src`.
gboolean stop(OmbeSubParse* element);

/// Takes the event.
gboolean seek(OmbeSubParse* element, GstEvent* event);

/// Reads anew and goes on from the place that is seen.
void settingsChanged(OmbeSubParse* element);

void installProperties(GObjectClass* object);

}  // namespace Ombe
