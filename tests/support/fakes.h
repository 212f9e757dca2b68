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
#include <utility>
#include <vector>

#include "ombe_core/container_host.h"
#include "ombe_core/container_interface.h"
#include "ombe_core/media_chunk.h"
#include "ombe_core/plugin.h"
#include "ombe_core/plugin_context.h"
#include "ombe_core/setting_consumer.h"
#include "ombe_core/stream_interface.h"
#include "ombe_core/subtitle_control_interface.h"
#include "ombe_core/subtitle_controller.h"
#include "ombe_core/time_source.h"

namespace ombe_test {

/// What a plug-in called, in order, as "operation argument".
struct CallLog {
  void add(std::string call);
  [[nodiscard]] std::vector<std::string> take();

 private:
  std::mutex mutex_;
  std::vector<std::string> calls_;
};

/// Settings by "Group/Key"; keeps every string that it was handed. Any thread.
class FakeSettings {
 public:
  bool get(const Ombe::Setting& setting, Ombe::SettingValue& out) const;
  void set(const Ombe::Setting& setting, const Ombe::SettingValue& value);
  void setString(const char* group, const char* key, const char* text);
  void setRatio(std::uint32_t numerator, std::uint32_t denominator);
  /// "true", "25/1", the string in quotes, or "none".
  [[nodiscard]] std::string text(const char* group, const char* key) const;

 private:
  mutable std::mutex mutex_;
  std::map<std::pair<std::string, std::string>, Ombe::SettingValue> values_;
  std::vector<std::unique_ptr<Ombe::String>> strings_;
};

struct FakeContext : Ombe::PluginContext {
  bool supportsFormat(Ombe::String formatName) override;
  bool answer = true;
  std::vector<std::string> asked;
};

/// Owns announced streams until they are withdrawn. Fails the test on a call that has no place: a
/// reserved slot, a stream under an identifier that the host did not give or gave away already, a
/// stream that is not its own.
class FakeHost : public Ombe::ContainerHost {
 public:
  ~FakeHost() override;
  bool getValue(const Ombe::Setting& setting, Ombe::SettingValue& out) override;
  void setValue(const Ombe::Setting& setting, const Ombe::SettingValue& value) override;
  Ombe::UID newUID() override;
  Ombe::String preferredLanguage() override;
  double getTimeOffset() override;
  Ombe::Status announceStream(Ombe::StreamInterface* stream) override;
  Ombe::Status withdrawStream(Ombe::UID uid) override;
  Ombe::Status selectStream(Ombe::UID uid, std::int32_t flag) override;
#define OMBE_RESERVED(slot) \
  void reservedSlot##slot() override { ADD_FAILURE() << "host slot " #slot " was called"; }
  OMBE_RESERVED(5)
  OMBE_RESERVED(7)
  OMBE_RESERVED(9)
  OMBE_RESERVED(10)
  OMBE_RESERVED(11)
  OMBE_RESERVED(12)
  OMBE_RESERVED(13)
  OMBE_RESERVED(14)
  OMBE_RESERVED(15)
  OMBE_RESERVED(16)
  OMBE_RESERVED(17)
  OMBE_RESERVED(18)
  OMBE_RESERVED(19)
  OMBE_RESERVED(20)
  OMBE_RESERVED(21)
#undef OMBE_RESERVED

  FakeSettings settings;
  CallLog calls;
  double offset = 0;
  bool logsQueries = false;  // settings and offset, which are asked for often
  Ombe::UID nextUID = 1;
  std::string language;
  std::map<Ombe::UID, std::unique_ptr<Ombe::StreamInterface>> streams;
  bool keepsWithdrawn = false;
  std::vector<std::unique_ptr<Ombe::StreamInterface>> withdrawn;
  std::function<void(const std::string& call)> callBack;  // from within each call about a stream

 private:
  void streamCall(const std::string& call);

  std::set<Ombe::UID> given_;
};

/// Shares the host's settings; `change` stores and then tells the consumers, without its lock. Any
/// thread.
class FakeController : public Ombe::SubtitleController {
 public:
  explicit FakeController(FakeHost& host) : calls(host.calls), host_(host) {}
  ~FakeController() override;
  bool getValue(const Ombe::Setting& setting, Ombe::SettingValue& out) override;
  void setValue(const Ombe::Setting& setting, const Ombe::SettingValue& value) override;
  bool registerConsumer(Ombe::SettingConsumer* consumer) override;
  bool unregisterConsumer(Ombe::SettingConsumer* consumer) override;
#define OMBE_RESERVED(slot) \
  void reservedSlot##slot() override { ADD_FAILURE() << "controller slot " #slot " was called"; }
  OMBE_RESERVED(4)
  OMBE_RESERVED(5)
  OMBE_RESERVED(6)
  OMBE_RESERVED(7)
  OMBE_RESERVED(8)
  OMBE_RESERVED(9)
  OMBE_RESERVED(10)
  OMBE_RESERVED(11)
  OMBE_RESERVED(12)
#undef OMBE_RESERVED

  void change(const char* group, const char* key, const Ombe::SettingValue* value,
              Ombe::MediaType mediaType = Ombe::MediaType::kSubtitle);
  void changeRatio(std::uint32_t numerator, std::uint32_t denominator);
  void changeCodePage(const char* name);

  CallLog& calls;  // the host's: the order among both counts
  std::vector<Ombe::SettingConsumer*> consumers;

 private:
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
class Component {
 public:
  explicit Component(Ombe::PluginContext* context);
  ~Component();
  Component(const Component&) = delete;
  Component& operator=(const Component&) = delete;

  Ombe::Plugin* plugin = nullptr;
  Ombe::ContainerInterface* container = nullptr;
  Ombe::SubtitleControlInterface* control = nullptr;
};

/// A file of its own, removed on destruction.
class TempFile {
 public:
  explicit TempFile(const std::string& content, const std::string& name = "movie.sub");
  ~TempFile();
  TempFile(const TempFile&) = delete;
  TempFile& operator=(const TempFile&) = delete;
  [[nodiscard]] std::string path() const { return path_.string(); }
  [[nodiscard]] std::string uri() const { return "file://" + path(); }

 private:
  std::filesystem::path path_;
};

/// Log records while it lives, as "channel function:line text".
class LogCapture {
 public:
  LogCapture();
  ~LogCapture();
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;
  [[nodiscard]] std::vector<std::string> take() { return log_.take(); }

 private:
  CallLog log_;
};

/// Everything together: a component attached to host and controller, deactivated at the end.
struct Engine {
  explicit Engine(bool attached = true);
  ~Engine();

  bool probe(const std::string& uri, Ombe::FormatRequirementList* missing = nullptr);
  Ombe::Status open(const std::string& uri);
  Ombe::Status activate();
  /// Opens a file of this content, activates, and gives the stream the clock; null when refused.
  Ombe::StreamInterface* play(const std::string& content);
  [[nodiscard]] Ombe::StreamInterface* newestStream() const;

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
