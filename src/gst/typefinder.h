// Telling MicroDVD from other streams.
#pragma once

#include <gst/gst.h>

namespace Ombe {

/// Not application/x-subtitle: that stands for SubRip and others as well, which the plug-in
/// refuses.
inline constexpr char kMicroDVDCaps[] = "application/x-subtitle-microdvd";

/// Registers the typefinder `ombemicrodvd`, which is asked before that of the stock parser.
gboolean registerTypefinder(GstPlugin* plugin);

}  // namespace Ombe
