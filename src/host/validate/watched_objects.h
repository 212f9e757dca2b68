// The engine's objects for a plug-in under test: they behave as the interfaces say, keep a record
// of what they are called with, and can call back.
#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "host/session/host_controller.h"
#include "ombe_core/container_host.h"
#include "ombe_core/plugin_context.h"
#include "ombe_core/stream_interface.h"
#include "ombe_core/subtitle_controller.h"
#include "ombe_core/time_source.h"

namespace Ombe {

/// The calls on the engine's objects in their order, and those among them that no plug-in may make.
/// Any thread.
class CallRecord {
 public:
  /// Of a call that is done; comes back from within it.
  void add(const std::string& call);
  /// Comes back from within a call that is made too often to be recorded.
  void comeBack(const std::string& call) const;
  void addFoul(const std::string& call);
  std::vector<std::string> take();
  /// The first there was; empty for none.
  [[nodiscard]] std::string foul() const;

  /// Called from within each call; to be set while there is one thread.
  std::function<void(const std::string& call)> comingBack;

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> calls_;
  std::string foul_;
};

/// Declares that a call of the engine's own slot is a foul.
#define OMBE_FOUL(object, slot) \
  void reservedSlot##slot() override { record_.addFoul("slot " #slot " of " object); }

class WatchedContext final : public PluginContext {
 public:
  explicit WatchedContext(CallRecord& record) : record_(record) {}
  // clang-format off
  OMBE_FOUL("PluginContext", 2) OMBE_FOUL("PluginContext", 3) OMBE_FOUL("PluginContext", 4)
  OMBE_FOUL("PluginContext", 5) OMBE_FOUL("PluginContext", 6) OMBE_FOUL("PluginContext", 7)
      // clang-format on
      bool supportsFormat(String formatName) override;

  bool showsFormats = true;

 private:
  CallRecord& record_;
};

/// Tells changes of settings as the program's own controller does.
class WatchedController final : public SubtitleController {
 public:
  explicit WatchedController(CallRecord& record) : record_(record) {}
  bool getValue(const Setting& setting, SettingValue& out) override {
    return ask("controller getValue ", setting, out);
  }
  void setValue(const Setting& setting, const SettingValue& value) override;
  // clang-format off
  OMBE_FOUL("SubtitleController", 4) OMBE_FOUL("SubtitleController", 5)
  OMBE_FOUL("SubtitleController", 6) OMBE_FOUL("SubtitleController", 7)
  OMBE_FOUL("SubtitleController", 8) OMBE_FOUL("SubtitleController", 9)
  OMBE_FOUL("SubtitleController", 10) OMBE_FOUL("SubtitleController", 11)
  OMBE_FOUL("SubtitleController", 12)
      // clang-format on
      bool registerConsumer(SettingConsumer* consumer) override;
  bool unregisterConsumer(SettingConsumer* consumer) override;

  /// Those that are registered now. Any thread.
  [[nodiscard]] std::set<SettingConsumer*> consumers() const;
  /// getValue, under the name of who asks.
  bool ask(const char* call, const Setting& setting, SettingValue& out);

 private:
  CallRecord& record_;
  HostController real_;
  mutable std::mutex mutex_;
  std::set<SettingConsumer*> consumers_;  // guarded by mutex_
};

/// Stands where it was put; any thread.
class WatchedClock final : public TimeSource {
 public:
  explicit WatchedClock(CallRecord& record) : record_(record) {}
  void set(std::int32_t milliseconds) { time_ = milliseconds; }
  std::int32_t currentTime() override { return record_.comeBack("currentTime"), time_.load(); }

 private:
  CallRecord& record_;
  std::atomic<std::int32_t> time_{0};
};

/// Owns announced streams until they are withdrawn, and then keeps them if told to.
class WatchedHost final : public ContainerHost {
 public:
  WatchedHost(CallRecord& record, WatchedController& controller)
      : record_(record), controller_(controller) {}
  bool getValue(const Setting& setting, SettingValue& out) override {
    return controller_.ask("getValue ", setting, out);
  }
  void setValue(const Setting& setting, const SettingValue& value) override {
    controller_.setValue(setting, value);
  }
  UID newUID() override;
  String preferredLanguage() override;
  double getTimeOffset() override { return record_.comeBack("getTimeOffset"), offset; }
  Status announceStream(StreamInterface* stream) override;
  Status withdrawStream(UID uid) override;
  Status selectStream(UID uid, std::int32_t flag) override;
  // clang-format off
  OMBE_FOUL("ContainerHost", 5) OMBE_FOUL("ContainerHost", 7) OMBE_FOUL("ContainerHost", 9)
  OMBE_FOUL("ContainerHost", 10) OMBE_FOUL("ContainerHost", 11) OMBE_FOUL("ContainerHost", 12)
  OMBE_FOUL("ContainerHost", 13) OMBE_FOUL("ContainerHost", 14) OMBE_FOUL("ContainerHost", 15)
  OMBE_FOUL("ContainerHost", 16) OMBE_FOUL("ContainerHost", 17) OMBE_FOUL("ContainerHost", 18)
  OMBE_FOUL("ContainerHost", 19) OMBE_FOUL("ContainerHost", 20) OMBE_FOUL("ContainerHost", 21)
  // clang-format on
#undef OMBE_FOUL

                          std::map<UID, std::unique_ptr<StreamInterface>> streams;
  std::vector<std::unique_ptr<StreamInterface>> withdrawn;  ///< if kept
  bool keepsWithdrawn = false;
  UID selected = kNoUID;
  std::atomic<double> offset{0};
  std::string language;
  StandardAllocator<char>* languageAllocator = &StandardAllocator<char>::defaultInstance();

 private:
  CallRecord& record_;
  WatchedController& controller_;
  std::set<UID> given_;
  std::mutex mutex_;
};

/// Values of every tag, few of which a setting can have.
struct OddValues {
  String none, text{"no such page"};
  SettingValue values[8] = {SettingValue(),
                            SettingValue::boolean(true),
                            SettingValue::ratio({0, 0}),
                            SettingValue::ratio({1, ~0U}),
                            SettingValue::ratio({~0U, 1}),
                            SettingValue::string(nullptr),
                            SettingValue::string(&none),
                            SettingValue::string(&text)};
};

}  // namespace Ombe
