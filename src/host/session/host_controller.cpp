#include "host/session/host_controller.h"

#include <algorithm>

#include "ombe_core/setting_consumer.h"

namespace Ombe {

/// Puts a call on record and gives up the lock for its length.
class HostController::Calling {
 public:
  Calling(HostController& controller, SettingConsumer* consumer, std::unique_lock<std::mutex>& lock)
      : controller_(controller), call_{consumer, std::this_thread::get_id()}, lock_(lock) {
    controller_.calls_.push_back(call_);
    lock_.unlock();
  }
  Calling(const Calling&) = delete;
  Calling& operator=(const Calling&) = delete;
  ~Calling() {
    lock_.lock();
    controller_.calls_.erase(
        std::find(controller_.calls_.begin(), controller_.calls_.end(), call_));
    controller_.callEnded_.notify_all();
  }

 private:
  HostController& controller_;
  Call call_;
  std::unique_lock<std::mutex>& lock_;
};

bool HostController::getValue(const Setting& setting, SettingValue& out) {
  return table_.get(setting, out);
}

void HostController::setValue(const Setting& setting, const SettingValue& value) {
  const SettingValue stored = table_.set(setting, value);
  std::unique_lock lock(mutex_);
  const std::vector<SettingConsumer*> told = consumers_;
  for (SettingConsumer* consumer : told) {
    // One that was told before may have deregistered it.
    if (!isRegistered(consumer)) continue;
    const Calling calling(*this, consumer, lock);
    consumer->settingChanged(setting, &stored);
  }
}

bool HostController::registerConsumer(SettingConsumer* consumer) {
  const std::lock_guard lock(mutex_);
  if (consumer == nullptr || isRegistered(consumer)) return false;
  consumers_.push_back(consumer);
  return true;
}

bool HostController::unregisterConsumer(SettingConsumer* consumer) {
  std::unique_lock lock(mutex_);
  const bool found = std::erase(consumers_, consumer) != 0;
  // A consumer that deregisters from within its own notification must not wait for itself.
  callEnded_.wait(lock, [&, self = std::this_thread::get_id()] {
    return std::none_of(calls_.begin(), calls_.end(), [&](const Call& call) {
      return call.consumer == consumer && call.thread != self;
    });
  });
  return found;
}

bool HostController::isRegistered(const SettingConsumer* consumer) const {
  return std::find(consumers_.begin(), consumers_.end(), consumer) != consumers_.end();
}

}  // namespace Ombe
