#include "text/text_settings.h"

#include "ombe_core/setting_store.h"

namespace Ombe {

const String* readStringSetting(SettingStore* store, const Setting& setting) {
  static const String noText;
  SettingValue value;
  if (store == nullptr || !store->getValue(setting, value) || !value.isString()) return nullptr;
  return value.asString() == nullptr ? &noText : value.asString();
}

bool readFlagSetting(SettingStore* store, const Setting& setting) {
  SettingValue value;
  return store != nullptr && store->getValue(setting, value) && value.asBoolean().value_or(false);
}

}  // namespace Ombe
