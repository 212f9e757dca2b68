// Reading settings.
#pragma once

#include "ombe_core/kelm_string.h"
#include "ombe_core/setting.h"

namespace Ombe {

class SettingStore;

/// The text of a string setting, the empty text when the value carries no string. Null when there
/// is no store, no value, or one of another kind. Belongs to the store and is valid as long as it.
const String* readStringSetting(SettingStore* store, const Setting& setting);

/// Whether there is a store and the setting is a boolean that is true.
bool readFlagSetting(SettingStore* store, const Setting& setting);

}  // namespace Ombe
