// The settings of subtitles.
#pragma once

#include "ombe_core/setting.h"

namespace Ombe {

/// "FrameRate"/"Ratio": the rate that the user chose. Each of these three is made on first use, by
/// any thread, and valid as long as the module that asked.
inline const Setting& frameRateSetting() {
  static const Setting setting(MediaType::kSubtitle, "FrameRate", "Ratio");
  return setting;
}

/// "CodePage"/"Name": in which code page a text is stored.
inline const Setting& codePageSetting() {
  static const Setting setting(MediaType::kSubtitle, "CodePage", "Name");
  return setting;
}

/// "CodePage"/"Autodetected": whether the code page was found in the file itself.
inline const Setting& autodetectedSetting() {
  static const Setting setting(MediaType::kSubtitle, "CodePage", "Autodetected");
  return setting;
}

}  // namespace Ombe
