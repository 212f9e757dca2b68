#include "host/session/setting_table.h"

#include <algorithm>
#include <utility>

namespace Ombe {

bool SettingTable::get(const Setting& setting, SettingValue& out) const {
  const std::lock_guard lock(mutex_);
  const auto found = std::find_if(entries_.begin(), entries_.end(),
                                  [&](const Entry& entry) { return entry.setting == setting; });
  if (found == entries_.end()) return false;
  out = found->value;
  return true;
}

SettingValue SettingTable::set(const Setting& setting, const SettingValue& value) {
  std::unique_ptr<String> text(value.asString());
  const std::lock_guard lock(mutex_);
  const SettingValue stored = text == nullptr ? value : SettingValue::string(keep(std::move(text)));
  const auto found = std::find_if(entries_.begin(), entries_.end(),
                                  [&](const Entry& entry) { return entry.setting == setting; });
  if (found == entries_.end()) {
    entries_.push_back({setting, stored});
  } else {
    found->value = stored;
  }
  return stored;
}

String* SettingTable::keep(std::unique_ptr<String> text) {
  const auto [kept, added] = strings_.try_emplace(view(*text), nullptr);
  if (added) {
    kept->second = std::move(text);
  } else if (kept->second == text) {
    // A value that was read from here and handed back: the table owns it already.
    static_cast<void>(text.release());
  }
  return kept->second.get();
}

}  // namespace Ombe
