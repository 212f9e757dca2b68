// What the first bytes of a file say, before any plug-in is asked.
#pragma once

#include <gst/gst.h>

#include <string_view>

namespace Ombe {

/// Not application/x-subtitle: that stands for SubRip and others as well, which the plug-in
/// refuses.
inline constexpr char kMicroDVDCaps[] = "application/x-subtitle-microdvd";

/// Registers the typefinder `ombemicrodvd`, which is asked before that of the stock parser. It
/// looks whether the first line that is not empty begins with two frame numbers, as the plug-in
/// demands, in ASCII and what is ASCII but for a signature or NUL bytes: UTF-8, UTF-16, UTF-32 and
/// most texts in the other encodings that have a signature.
gboolean registerTypefinder(GstPlugin* plugin);

/// Whether a header line states a usable frame rate; of heads that the typefinder knows.
bool statesFrameRate(std::string_view head);

}  // namespace Ombe
