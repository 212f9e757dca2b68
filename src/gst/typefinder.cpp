#include "gst/typefinder.h"

#include <algorithm>

#include "gst/head.h"

namespace Ombe {
namespace {

/// What there is of the head. Peeking at more bytes than a stream has gives none, and its length
/// may be unknown, so small sizes are tried one by one.
std::string_view peekHead(GstTypeFind* find) {
  guint64 size = gst_type_find_get_length(find);
  size = size == 0 ? kHeadSize : std::min<guint64>(size, kHeadSize);
  for (; size > 0; size = size > 128 ? size / 2 : size - 1) {
    const guint8* bytes = gst_type_find_peek(find, 0, static_cast<guint>(size));
    if (bytes != nullptr) return {reinterpret_cast<const char*>(bytes), size};
  }
  return {};
}

void findMicroDVD(GstTypeFind* find, gpointer /*data*/) {
  if (!beginsAsMicroDVD(peekHead(find))) return;
  gst_type_find_suggest_empty_simple(find, GST_TYPE_FIND_MAXIMUM, kMicroDVDCaps);
}

}  // namespace

gboolean registerTypefinder(GstPlugin* plugin) {
  GstCaps* caps = gst_caps_from_string(kMicroDVDCaps);
  // The stock parser's is marginal and says application/x-subtitle with certainty.
  const gboolean done = gst_type_find_register(plugin, "ombemicrodvd", GST_RANK_MARGINAL + 1,
                                               findMicroDVD, "sub,txt", caps, nullptr, nullptr);
  gst_caps_unref(caps);
  return done;
}

}  // namespace Ombe
