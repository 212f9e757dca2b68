// Whoever wants to be told of setting changes.
#pragma once

#include "ombe_core/export.h"
#include "ombe_core/setting.h"
#include "ombe_core/setting_value.h"

namespace Ombe {

/// Implemented by containers, called by the SubtitleController between registration and
/// deregistration, on whatever thread changed the setting.
class OMBE_API SettingConsumer {
 public:
  SettingConsumer() = default;
  SettingConsumer(const SettingConsumer&) = delete;
  SettingConsumer& operator=(const SettingConsumer&) = delete;
  virtual ~SettingConsumer();  // slots 0 and 1

  /// Slot 2. `value` may be null and belongs to the caller, its string included.
  virtual void settingChanged(const Setting& setting, const SettingValue* value) = 0;
};

}  // namespace Ombe
