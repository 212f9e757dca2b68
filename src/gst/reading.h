// From the bytes of a file to its cues, through the engine's plug-in.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "gst/cue_list.h"
#include "host/session/session.h"
#include "host/text/markup.h"
#include "host/text/number_text.h"

namespace Ombe {

/// What may be set from outside. A rate with a zero part is none.
struct ReadingSettings {
  std::string codePage;   ///< of texts without signature; empty for UTF-8
  Ratio videoRate{0, 1};  ///< for a file that states no frame rate
  Ratio frameRate{0, 1};  ///< goes before that of the file
  std::string plugin;     ///< path; empty to search for it
  ColorOrder colorOrder = ColorOrder::kRgb;
  bool operator==(const ReadingSettings&) const = default;
};

/// The plug-in that the settings name, or the first found; the last place looked at is the folder
/// of plug-ins beside this library. Throws Failure when there is none.
std::string pluginFor(const ReadingSettings& settings);

/// Opens a file of that content, reads all of it and lets go of it: whoever changes a setting reads
/// anew, which gives every time to the millisecond, while the plug-in would scale rounded ones.
/// `warn` is told what does not keep the file from being read. Throws Failure with the reasons when
/// the plug-in refuses the content. Threads share nothing.
CueList readCues(std::string_view content, const ReadingSettings& settings,
                 const std::function<void(const std::string&)>& warn);

}  // namespace Ombe
