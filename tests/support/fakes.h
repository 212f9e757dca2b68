// An engine for tests: it records what a plug-in does and fails the test on what it may not do.
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "ombe_core/container_host.h"
#include "ombe_core/container_interface.h"
#include "ombe_core/logger.h"
#include "ombe_core/media_chunk.h"
#include "ombe_core/media_source.h"
#include "ombe_core/plugin.h"
#include "ombe_core/plugin_context.h"
#include "ombe_core/setting_consumer.h"
#include "ombe_core/stream_interface.h"
#include "ombe_core/subtitle_control_interface.h"
#include "ombe_core/subtitle_controller.h"
#include "ombe_core/time_source.h"
#include "support/allocation_faults.h"

namespace ombe_test {

/// "Group/Key".
std::string pathOf(const Ombe::Setting& setting);

/// What a plug-in called, in order, as "operation argument".
struct CallLog {
  void add(const std::string& call) {
    const std::lock_guard lock(mutex_);
    calls_.push_back(call);
  }
  [[nodiscard]] std::vector<std::string> take() {
    const std::lock_guard lock(mutex_);
    return std::exchange(calls_, {});
  }

 private:
  std::mutex mutex_;
  std::vector<std::string> calls_;
};

/// Settings by "Group/Key"; keeps every string that it was handed. Any thread.
class FakeSettings {
 public:
  bool get(const Ombe::Setting& setting, Ombe::SettingValue& out) const;
  void set(const Ombe::Setting& setting, const Ombe::SettingValue& value);
  void setString(const char* group, const char* key, const char* text) {
    set({Ombe::MediaType::kSubtitle, group, key},
        Ombe::SettingValue::string(new Ombe::String(text)));
  }
  void setRatio(std::uint32_t numerator, std::uint32_t denominator) {
    set({Ombe::MediaType::kSubtitle, "FrameRate", "Ratio"},
        Ombe::SettingValue::ratio({numerator, denominator}));
  }
  /// "true", the string in quotes, or "none".
  [[nodiscard]] std::string text(const char* group, const char* key) const;

 private:
  mutable std::mutex mutex_;
  std::map<std::string, Ombe::SettingValue> values_;
  std::vector<std::unique_ptr<Ombe::String>> strings_;
};

#define OMBE_RESERVED(slot) \
  void reservedSlot##slot() override { ADD_FAILURE() << "slot " #slot " was called"; }

struct FakeContext : Ombe::PluginContext {
  // clang-format off
  OMBE_RESERVED(2) OMBE_RESERVED(3) OMBE_RESERVED(4) OMBE_RESERVED(5) OMBE_RESERVED(6)
  OMBE_RESERVED(7)
  // clang-format on
  bool supportsFormat(Ombe::String formatName) override {
    const FaultPause pause;
    asked.emplace_back(view(formatName));
    return answer;
  }
  bool answer = true;
  std::vector<std::string> asked;
};

/// Owns announced streams until they are withdrawn. Fails the test on a call that has no place: on
/// a stream under an identifier that the host did not give or gave away already, or not its own.
class FakeHost : public Ombe::ContainerHost {
 public:
  ~FakeHost() override { EXPECT_TRUE(streams.empty()) << "streams were never withdrawn"; }
  bool query(const char* call, const Ombe::Setting& setting, Ombe::SettingValue& out);
  bool getValue(const Ombe::Setting& setting, Ombe::SettingValue& out) override {
    return query("getValue ", setting, out);
  }
  void setValue(const Ombe::Setting& setting, const Ombe::SettingValue& value) override {
    const FaultPause pause;
    settings.set(setting, value);
    told("setValue " + pathOf(setting));
  }
  Ombe::UID newUID() override {
    const FaultPause pause;
    told("newUID");
    given_.insert(nextUID);
    return nextUID++;
  }
  Ombe::String preferredLanguage() override {
    const FaultPause pause;
    told("preferredLanguage");
    return {language.c_str(), static_cast<std::uint32_t>(language.size())};
  }
  double getTimeOffset() override {
    const FaultPause pause;
    told("getTimeOffset", logsQueries);
    return offset;
  }
  Ombe::Status announceStream(Ombe::StreamInterface* stream) override;
  Ombe::Status withdrawStream(Ombe::UID uid) override;
  Ombe::Status selectStream(Ombe::UID uid, std::int32_t flag) override;
  // clang-format off
  OMBE_RESERVED(5) OMBE_RESERVED(7) OMBE_RESERVED(9) OMBE_RESERVED(10) OMBE_RESERVED(11)
  OMBE_RESERVED(12) OMBE_RESERVED(13) OMBE_RESERVED(14) OMBE_RESERVED(15) OMBE_RESERVED(16)
  OMBE_RESERVED(17) OMBE_RESERVED(18) OMBE_RESERVED(19) OMBE_RESERVED(20) OMBE_RESERVED(21)
  // clang-format on

  /// Of a call on the host or its controller.
  void told(const std::string& call, bool isLogged = true) {
    if (isLogged) calls.add(call);
    if (const auto act = callBack) act(call);  // a copy, since it may disarm itself
  }

  FakeSettings settings;
  CallLog calls;
  double offset = 0;
  bool logsQueries = false;  // settings and offset, which are asked for often
  Ombe::UID nextUID = 1;
  std::string language;
  std::map<Ombe::UID, std::unique_ptr<Ombe::StreamInterface>> streams;
  std::function<void(const std::string& call)> callBack;  // from within each call

 private:
  std::set<Ombe::UID> given_;
};

/// Shares the host's settings and log of calls; `change` stores and then tells the consumers,
/// without its lock. Any thread.
class FakeController : public Ombe::SubtitleController {
 public:
  explicit FakeController(FakeHost& host) : host_(host) {}
  ~FakeController() override { EXPECT_TRUE(consumers.empty()) << "was never deregistered"; }
  bool getValue(const Ombe::Setting& setting, Ombe::SettingValue& out) override {
    return host_.query("controller getValue ", setting, out);
  }
  void setValue(const Ombe::Setting& /*setting*/, const Ombe::SettingValue& /*value*/) override {
    ADD_FAILURE() << "the controller was written to";
  }
  bool registerConsumer(Ombe::SettingConsumer* consumer) override {
    return enlist("register", consumer, 1);
  }
  // clang-format off
  OMBE_RESERVED(4) OMBE_RESERVED(5) OMBE_RESERVED(6) OMBE_RESERVED(7) OMBE_RESERVED(8)
  OMBE_RESERVED(9) OMBE_RESERVED(10) OMBE_RESERVED(11) OMBE_RESERVED(12)
  // clang-format on
#undef OMBE_RESERVED
  bool unregisterConsumer(Ombe::SettingConsumer* consumer) override {
    return enlist("unregister", consumer, 0);
  }

  void change(const char* group, const char* key, const Ombe::SettingValue* value,
              Ombe::MediaType mediaType = Ombe::MediaType::kSubtitle);
  void changeRatio(std::uint32_t numerator, std::uint32_t denominator) {
    const auto value = Ombe::SettingValue::ratio({numerator, denominator});
    host_.settings.setRatio(numerator, denominator);
    change("FrameRate", "Ratio", &value);
  }
  void changeCodePage(const char* name) {
    Ombe::String text(name);
    const auto value = Ombe::SettingValue::string(&text);
    host_.settings.setString("CodePage", "Name", name);
    change("CodePage", "Name", &value);
  }

  std::vector<Ombe::SettingConsumer*> consumers;

 private:
  bool enlist(const char* call, Ombe::SettingConsumer* consumer, std::size_t times);

  std::mutex mutex_;
  FakeHost& host_;
};

struct FakeClock : Ombe::TimeSource {
  std::int32_t currentTime() override { return now; }
  std::atomic<std::int32_t> now{0};
};

/// The built plug-in's, which stays loaded, as it does in the engine.
Ombe::EntryPoint entryPoint();

/// The built plug-in's component with its interfaces; released on destruction.
struct Component {
  explicit Component(Ombe::PluginContext* context);
  ~Component() { EXPECT_EQ(plugin->release(), 0); }
  Component(const Component&) = delete;

  Ombe::Plugin* plugin = nullptr;
  Ombe::ContainerInterface* container = nullptr;
  Ombe::SubtitleControlInterface* control = nullptr;
};

/// A file of its own, removed on destruction.
struct TempFile {
  explicit TempFile(const std::string& content, const std::string& name = "movie.sub");
  ~TempFile() { std::filesystem::remove_all(path_.parent_path()); }
  TempFile(const TempFile&) = delete;
  [[nodiscard]] std::string path() const { return path_.string(); }
  [[nodiscard]] std::string uri() const { return "file://" + path(); }

 private:
  std::filesystem::path path_;
};

/// Log records while it lives, as "channel function:line text".
struct LogCapture {
  LogCapture() {
    Ombe::Logger::instance().setSink([this](const Ombe::LogRecord& record) {
      log_.add(std::string(record.channel) + " " + record.function + ":" +
               std::to_string(record.line) + " " + record.text);
    });
  }
  ~LogCapture() { Ombe::Logger::instance().setSink({}); }
  [[nodiscard]] std::vector<std::string> take() { return log_.take(); }

 private:
  CallLog log_;
};

/// Everything together: a component attached to host and controller, deactivated at the end.
struct Engine {
  explicit Engine(bool attached = true) {
    if (!attached) return;
    component.container->attach(&host, 77);
    component.control->setSubtitleController(&controller);
  }
  ~Engine() { component.container->deactivate(false); }

  bool probe(const std::string& uri, Ombe::FormatRequirementList* missing = nullptr) {
    return component.container->probe(Ombe::MediaSource(Ombe::toByteString(uri)), 1, 2, missing);
  }
  Ombe::Status open(const std::string& uri) {
    return component.container->open(Ombe::MediaSource(Ombe::toByteString(uri)));
  }
  Ombe::Status activate() {
    Ombe::ContainerInterface& container = *component.container;
    return container.activateProgram(container.getProgramUIDs().head()->value);
  }
  /// Opens a file of this content, activates, and gives the stream the clock; null when refused.
  Ombe::StreamInterface* play(const std::string& content);
  [[nodiscard]] Ombe::StreamInterface* newestStream() const {
    return host.streams.empty() ? nullptr : host.streams.rbegin()->second.get();
  }

  FakeContext context;
  FakeHost host;
  FakeController controller{host};
  FakeClock clock;
  Component component{&context};
};

/// One read as "1000+2000 text" (line feeds as "|"), "end" or "wait". The chunk is released.
std::string readOne(Ombe::StreamInterface& stream);

/// All that is left in the stream's direction, joined by " ; ".
std::string readAll(Ombe::StreamInterface& stream);

}  // namespace ombe_test
