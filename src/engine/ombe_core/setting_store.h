// Reading and writing settings.
#pragma once

#include "ombe_core/export.h"
#include "ombe_core/setting.h"
#include "ombe_core/setting_value.h"

namespace Ombe {

/// The setting operations that ContainerHost and SubtitleController both begin with. Implemented by
/// the engine; may be called from any thread, also from within a setting notification.
class OMBE_API SettingStore {
 public:
  SettingStore() = default;
  SettingStore(const SettingStore&) = delete;
  SettingStore& operator=(const SettingStore&) = delete;
  virtual ~SettingStore();  // slots 0 and 1

  /// Slot 2. True when the setting has a value, which is then in `out`; false leaves `out` alone. A
  /// string in `out` belongs to the store and stays valid as long as the store. A controller may
  /// be asked by a stream about a text that it is converting, and releases no streams from within.
  virtual bool getValue(const Setting& setting, SettingValue& out) = 0;

  /// Slot 3. Stores a copy of the value. A string payload, made with plain new, becomes the store's
  /// with the call, also when the call throws.
  virtual void setValue(const Setting& setting, const SettingValue& value) = 0;
};

}  // namespace Ombe
