// Where the engine keeps the frame rate.
#pragma once

#include "ombe_core/setting.h"

namespace Ombe {

/// ("FrameRate", "Ratio"): the rate that the user chose. Built once, any thread.
inline const Setting& frameRateRatioSetting() {
  static const Setting setting(MediaType::kSubtitle, "FrameRate", "Ratio");
  return setting;
}

}  // namespace Ombe
