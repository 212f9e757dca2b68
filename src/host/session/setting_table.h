// The settings of one engine.
#pragma once

#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string_view>

#include "ombe_core/setting.h"
#include "ombe_core/setting_value.h"

namespace Ombe {

/// Setting values and the strings among them. Every distinct string is kept once, and for as long
/// as the table, so that one handed out stays valid and setting the same again costs nothing. Has a
/// lock of its own under which it calls nobody; any thread. Few settings are expected: a look-up
/// compares names one by one, which for a handful beats any index.
class SettingTable {
 public:
  /// True when the setting has a value, which is then in `out`; false leaves `out` alone.
  bool get(const Setting& setting, SettingValue& out) const;

  /// Stores the value and returns it as stored. Takes over a string, made with plain new, with the
  /// call, also when it throws std::bad_alloc; nothing is stored then.
  SettingValue set(const Setting& setting, const SettingValue& value);

 private:
  struct Entry {
    Setting setting;
    SettingValue value;
  };

  String* keep(std::unique_ptr<String> text);

  mutable std::mutex mutex_;
  std::deque<Entry> entries_;
  std::map<std::string_view, std::unique_ptr<String>> strings_;  // each key views its string
};

}  // namespace Ombe
