// The settings of subtitles.
#pragma once

#include "ombe_core/setting.h"

namespace Ombe {

inline const Setting& frameRateSetting() {
  static const Setting setting(MediaType::kSubtitle, "FrameRate", "Ratio");
  return setting;
}

inline const Setting& codePageSetting() {
  static const Setting setting(MediaType::kSubtitle, "CodePage", "Name");
  return setting;
}

/// Whether the code page was found in the file itself.
inline const Setting& autodetectedSetting() {
  static const Setting setting(MediaType::kSubtitle, "CodePage", "Autodetected");
  return setting;
}

}  // namespace Ombe
