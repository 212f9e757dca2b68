// The engine's subtitle controller: who is told of setting changes.
#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

#include "host/session/setting_table.h"
#include "ombe_core/subtitle_controller.h"

namespace Ombe {

/// Stores changes in a SettingTable, which must outlive it, and tells the registered consumers
/// afterwards, on the thread of the change and with no lock held; a consumer may therefore read and
/// write settings, register and deregister from within. Any thread. Two changes of one setting at
/// the same moment may be told in either order.
class HostController final : public SubtitleController {
 public:
  explicit HostController(SettingTable& table) : table_(table) {}

  bool getValue(const Setting& setting, SettingValue& out) override;
  void setValue(const Setting& setting, const SettingValue& value) override;

  /// False for null and for a consumer that is registered already.
  bool registerConsumer(SettingConsumer* consumer) override;
  /// False for one that is not registered. Waits for a notification of this consumer that another
  /// thread has under way, so the consumer may be destroyed afterwards.
  bool unregisterConsumer(SettingConsumer* consumer) override;

 private:
  /// A notification under way.
  struct Call {
    SettingConsumer* consumer;
    std::thread::id thread;
    bool operator==(const Call&) const = default;
  };
  class Calling;

  [[nodiscard]] bool isRegistered(const SettingConsumer* consumer) const;  // under mutex_

  SettingTable& table_;
  std::mutex mutex_;
  std::condition_variable callEnded_;
  std::vector<SettingConsumer*> consumers_;  // guarded by mutex_
  std::vector<Call> calls_;                  // guarded by mutex_
};

}  // namespace Ombe
