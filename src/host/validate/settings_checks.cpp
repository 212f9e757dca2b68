// Settings: the controller, registrations and notifications.
#include <algorithm>

#include "host/session/source.h"
#include "host/validate/verdict.h"
#include "host/validate/watched_engine.h"
#include "ombe_core/setting_consumer.h"
#include "ombe_core/subtitle_settings.h"

namespace Ombe {
namespace {

using Attach = WatchedEngine::Attach;

/// The first that registered; reports when none did.
SettingConsumer& consumerOf(WatchedEngine& engine) {
  static_cast<void>(engine.control());
  expect(!engine.controller.consumers().empty(), "the activation registered no consumer");
  return **engine.controller.consumers().begin();
}

std::ptrdiff_t countOf(const std::vector<std::string>& calls, const char* wanted) {
  return std::count(calls.begin(), calls.end(), wanted);
}

void registersOnActivation(Playing& playing) {
  consumerOf(playing);
  expectSame("registered consumers", 1U,
             static_cast<unsigned>(playing.controller.consumers().size()));
}

void deregisters(Playing& playing) {
  consumerOf(playing);
  for (const bool keeps : {true, false}) {
    expectSame("activateProgram", kSuccess, playing.activate());
    consumerOf(playing);
    playing.record.take();
    expectSame("deactivate", kSuccess, playing.container().deactivate(keeps));
    expect(
        countOf(playing.record.take(), "unregisterConsumer") > 0 &&
            playing.controller.consumers().empty(),
        std::string("deactivate left a consumer registered") + (keeps ? ", keeping streams" : ""));
  }
}

void deregistersBeforeItWithdraws(Playing& playing) {
  consumerOf(playing);
  playing.record.take();
  playing.container().deactivate(false);
  for (const std::string& call : playing.record.take()) {
    if (call == "unregisterConsumer") return;
    expect(!call.starts_with("withdrawStream"), "a stream was withdrawn before");
  }
}

void ignoresNoController(WatchedEngine& engine) {
  engine.control().setSubtitleController(nullptr);
  static_cast<void>(engine.activate());
  const auto calls = engine.record.take();
  engine.container().deactivate(false);
  expect(countOf(calls, "registerConsumer") > 0,
         "after setSubtitleController of null the previous controller was not used");
}

void needsNoController(const Subject& subject) {
  WatchedEngine engine(subject, Attach::kLater);
  engine.container().attach(&engine.host, 1);
  for (const std::string& sample : subject.samples) {
    engine.open(sourceUri(sample));
    static_cast<void>(engine.activate());
    for (const auto& [uid, stream] : engine.host.streams) {
      stream->setTimeSource(&engine.clock);
      stream->readStream(nullptr);
    }
    expectSame("deactivate", kSuccess, engine.container().deactivate(false));
  }
}

/// Names, and values of tags that do not belong to them.
void ignoresWhatIsNotIts(Playing& playing) {
  SettingConsumer& consumer = consumerOf(playing);
  const auto entries = readAll(playing.stream);
  const OddValues odd;
  for (const char* group : {"", "Other", "Font"}) {
    for (const char* key : {"", "Name", "Ratio"}) {
      const Setting setting(MediaType::kSubtitle, group, key);
      for (const SettingValue& value : odd.values) consumer.settingChanged(setting, &value);
    }
  }
  expect(readAnew(playing.stream) == entries, "settings that nobody knows changed the entries");
}

void bearsAnyValue(Playing& playing) {
  SettingConsumer& consumer = consumerOf(playing);
  const OddValues odd;
  for (const Setting& setting : {frameRateSetting(), codePageSetting(), autodetectedSetting()}) {
    consumer.settingChanged(setting, nullptr);
    for (const SettingValue& value : odd.values) consumer.settingChanged(setting, &value);
  }
  readAnew(playing.stream);
}

/// The caller's string is gone right after.
void keepsNoString(Playing& playing) {
  SettingConsumer& consumer = consumerOf(playing);
  {
    String name("windows-1250 or so, in a string that is long enough for the heap");
    const SettingValue value = SettingValue::string(&name);
    consumer.settingChanged(codePageSetting(), &value);
    name = String("x");
  }
  readAnew(playing.stream);
}

void writesAgain(Playing& playing) {
  for (int round = 0; round < 3; ++round) {
    playing.probe(sourceUri(playing.sample));
    expectSame("open", kSuccess, playing.open(sourceUri(playing.sample)));
  }
  expect(playing.record.foul().empty(), playing.record.foul());
  static_cast<void>(playing.activate());
}

/// Whether it was deactivated before, or not: then its streams are left to nobody.
void isSilentWhenReleased(const Subject& subject) {
  static auto& left = *new std::vector<StreamInterface*>;
  for (const bool isActive : {false, true}) {
    WatchedEngine engine(subject);
    static_cast<void>(engine.container());
    for (const std::string& sample : subject.samples) engine.open(sourceUri(sample));
    static_cast<void>(engine.activate());
    if (!isActive) engine.container().deactivate(false);
    engine.record.take();
    engine.isLetGo = true;
    engine.plugin.reset();
    const auto calls = engine.record.take();
    expect(calls.empty(), "the component called " + (calls.empty() ? "" : calls.front()) +
                              " while it was destroyed");
    for (auto& [uid, stream] : engine.host.streams) left.push_back(stream.release());
  }
}

constexpr ContractCheck kSettingsChecks[] = {
    {"settings.registers", kTables, "an activation registers one consumer", registersOnActivation},
    {"settings.deregisters", kTables, "deactivate deregisters, keeping streams or not",
     deregisters},
    {"settings.deregisters-first", kTables, "deactivate deregisters before it withdraws streams",
     deregistersBeforeItWithdraws},
    {"settings.null-controller", kTables, "setSubtitleController of null is ignored",
     ignoresNoController},
    {"settings.no-controller", kTables, "everything is answered without a controller",
     needsNoController},
    {"settings.others", kSettings, "changes of settings that are none of its own change nothing",
     ignoresWhatIsNotIts},
    {"settings.any-value", kSettings, "a notification bears any value, of any tag, and none",
     bearsAnyValue},
    {"settings.string-of-a-notification", kOwnership,
     "the string of a notification is the caller's and is not kept", keepsNoString},
    {"settings.media-type", kSettings, "all settings asked for and written are of media type 4",
     writesAgain},
    {"settings.silent-end", kOwnership, "a component calls nobody while it is destroyed",
     isSilentWhenReleased},
};

}  // namespace

std::span<const ContractCheck> settingsChecks() { return kSettingsChecks; }

}  // namespace Ombe
