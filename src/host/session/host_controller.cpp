#include "host/session/host_controller.h"

#include <algorithm>
#include <utility>

#include "ombe_core/setting_consumer.h"
#include "ombe_core/subtitle_settings.h"

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
    controller_.calls_.erase(std::ranges::find(controller_.calls_, call_));
    controller_.callEnded_.notify_all();
  }

 private:
  HostController& controller_;
  Call call_;
  std::unique_lock<std::mutex>& lock_;
};

bool HostController::getValue(const Setting& setting, SettingValue& out) {
  const std::lock_guard lock(mutex_);
  const Entry* found = find(setting);
  if (found != nullptr) out = found->value;
  return found != nullptr;
}

void HostController::setValue(const Setting& setting, const SettingValue& value) {
  std::unique_ptr<String> text(value.asString());
  std::unique_lock lock(mutex_);
  const SettingValue stored = text == nullptr ? value : SettingValue::string(keep(std::move(text)));
  if (Entry* found = find(setting); found != nullptr) {
    found->value = stored;
  } else {
    entries_.push_back({setting, stored});
  }
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

HostController::Entry* HostController::find(const Setting& setting) {
  const auto found = std::ranges::find(entries_, setting, &Entry::setting);
  return found == entries_.end() ? nullptr : &*found;
}

String* HostController::keep(std::unique_ptr<String> text) {
  const auto [kept, added] = strings_.try_emplace(view(*text), nullptr);
  if (added) {
    kept->second = std::move(text);
  } else if (kept->second == text) {
    // A value that was read from here and handed back is owned already.
    static_cast<void>(text.release());
  }
  return kept->second.get();
}

std::optional<Ratio> HostController::frameRate() {
  SettingValue value;
  return getValue(frameRateSetting(), value) ? value.asRatio() : std::nullopt;
}

void HostController::setFrameRate(Ratio rate) {
  setValue(frameRateSetting(), SettingValue::ratio(rate));
}

std::string HostController::codePage() {
  SettingValue value;
  const String* name = getValue(codePageSetting(), value) ? value.asString() : nullptr;
  return name == nullptr ? std::string() : std::string(view(*name));
}

void HostController::setCodePage(const std::string& name) {
  setValue(codePageSetting(), SettingValue::string(new String(name.c_str())));
}

bool HostController::isAutodetected() {
  SettingValue value;
  return getValue(autodetectedSetting(), value) && value.asBoolean().value_or(false);
}

}  // namespace Ombe
