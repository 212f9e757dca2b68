// The engine's subtitle controller: the settings, and who is told of their changes.
#pragma once

#include <condition_variable>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "ombe_core/subtitle_controller.h"

namespace Ombe {

/// Stores changes and tells the registered consumers afterwards, on the thread of the change and
/// with no lock held; a consumer may therefore read and write settings, register and deregister
/// from within. Any thread. Two changes of one setting at the same moment may be told in either
/// order.
///
/// Every distinct string is kept once, and for as long as the controller, so that one handed out
/// stays valid and setting the same again costs nothing. Few settings are expected: a look-up
/// compares names one by one, which for a handful beats any index.
class HostController final : public SubtitleController {
 public:
  /// True when the setting has a value, which is then in `out`; false leaves `out` alone.
  bool getValue(const Setting& setting, SettingValue& out) override;
  /// Takes over a string, made with plain new, with the call, also when it throws std::bad_alloc;
  /// nothing is stored then.
  void setValue(const Setting& setting, const SettingValue& value) override;

  /// False for null and for a consumer that is registered already.
  bool registerConsumer(SettingConsumer* consumer) override;
  /// False for one that is not registered. Waits for a notification of this consumer that another
  /// thread has under way, so the consumer may be destroyed afterwards.
  bool unregisterConsumer(SettingConsumer* consumer) override;

  /// The rate that was chosen; with a zero part, or none, for the file's own.
  std::optional<Ratio> frameRate();
  void setFrameRate(Ratio rate);
  /// Empty for none.
  std::string codePage();
  void setCodePage(const std::string& name);
  /// Whether a signature in the file names its code page.
  bool isAutodetected();

 private:
  /// A notification under way.
  struct Call {
    SettingConsumer* consumer;
    std::thread::id thread;
    bool operator==(const Call&) const = default;
  };
  class Calling;

  struct Entry {
    Setting setting;
    SettingValue value;
  };

  // Under mutex_, which guards all members.
  [[nodiscard]] bool isRegistered(const SettingConsumer* consumer) const;
  Entry* find(const Setting& setting);
  String* keep(std::unique_ptr<String> text);

  std::mutex mutex_;
  std::condition_variable callEnded_;
  std::vector<SettingConsumer*> consumers_;
  std::vector<Call> calls_;
  std::deque<Entry> entries_;
  std::map<std::string_view, std::unique_ptr<String>> strings_;  // each key views its string
};

}  // namespace Ombe
