// The entry points that GStreamer looks for.
#include <gst/gst.h>

#include "gst/element.h"
#include "gst/head.h"

#define PACKAGE "ombe"

namespace {

gboolean registerFeatures(GstPlugin* plugin) {
  return Ombe::registerTypefinder(plugin) &&
         gst_element_register(plugin, "ombesubparse", GST_RANK_PRIMARY + 1, Ombe::elementType());
}

}  // namespace

// GStreamer refuses plug-ins whose license is not in its list, in which the Boost license is
// missing.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wcast-qual"  // in what the macro writes
GST_PLUGIN_DEFINE(GST_VERSION_MAJOR, GST_VERSION_MINOR, ombe,
                  "MicroDVD subtitles through the engine's plug-in", registerFeatures, OMBE_VERSION,
                  GST_LICENSE_UNKNOWN, "ombe", "https://example.org/ombe")
#pragma GCC diagnostic pop
