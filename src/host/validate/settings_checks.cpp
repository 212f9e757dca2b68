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
  expect(!engine.controller.consumers.empty(), "the activation registered no consumer");
  return **engine.controller.consumers.begin();
}

std::ptrdiff_t countOf(const std::vector<std::string>& calls, const char* wanted) {
  return std::count(calls.begin(), calls.end(), wanted);
}

void registersOnActivation(Playing& playing) {
  consumerOf(playing.engine);
  expectSame("registered consumers", 1U,
             static_cast<unsigned>(playing.engine.controller.consumers.size()));
}

void deregisters(Playing& playing) {
  WatchedEngine& engine = playing.engine;
  consumerOf(engine);
  for (const bool keeps : {true, false}) {
    expectSame("activateProgram", kSuccess, engine.activate());
    consumerOf(engine);
    engine.record.take();
    expectSame("deactivate", kSuccess, engine.container().deactivate(keeps));
    expect(
        countOf(engine.record.take(), "unregisterConsumer") > 0 &&
            engine.controller.consumers.empty(),
        std::string("deactivate left a consumer registered") + (keeps ? ", keeping streams" : ""));
  }
}

void deregistersBeforeItWithdraws(Playing& playing) {
  WatchedEngine& engine = playing.engine;
  consumerOf(engine);
  engine.record.take();
  engine.container().deactivate(false);
  for (const std::string& call : engine.record.take()) {
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
  SettingConsumer& consumer = consumerOf(playing.engine);
  const auto entries = readAll(playing.stream);
  String none, text("no such page");
  const SettingValue values[] = {SettingValue(),
                                 SettingValue::boolean(true),
                                 SettingValue::ratio({0, 0}),
                                 SettingValue::string(nullptr),
                                 SettingValue::string(&none),
                                 SettingValue::string(&text)};
  for (const char* group : {"", "Other", "Font"}) {
    for (const char* key : {"", "Name", "Ratio"}) {
      const Setting setting(MediaType::kSubtitle, group, key);
      for (const SettingValue& value : values) consumer.settingChanged(setting, &value);
    }
  }
  playing.stream.resetStream();
  expect(readAll(playing.stream) == entries, "settings that nobody knows changed the entries");
}

void bearsAnyValue(Playing& playing) {
  SettingConsumer& consumer = consumerOf(playing.engine);
  String none, text("no such page");
  const SettingValue values[] = {SettingValue(),
                                 SettingValue::boolean(true),
                                 SettingValue::ratio({0, 0}),
                                 SettingValue::ratio({1, ~0U}),
                                 SettingValue::ratio({~0U, 1}),
                                 SettingValue::string(nullptr),
                                 SettingValue::string(&none),
                                 SettingValue::string(&text)};
  for (const Setting& setting : {frameRateSetting(), codePageSetting(), autodetectedSetting()}) {
    consumer.settingChanged(setting, nullptr);
    for (const SettingValue& value : values) consumer.settingChanged(setting, &value);
  }
  playing.stream.resetStream();
  readAll(playing.stream);
}

/// The caller's string is gone right after.
void keepsNoString(Playing& playing) {
  SettingConsumer& consumer = consumerOf(playing.engine);
  {
    String name("windows-1250 or so, in a string that is long enough for the heap");
    const SettingValue value = SettingValue::string(&name);
    consumer.settingChanged(codePageSetting(), &value);
    name = String("x");
  }
  playing.stream.resetStream();
  readAll(playing.stream);
}

void writesAgain(Playing& playing) {
  WatchedEngine& engine = playing.engine;
  for (int round = 0; round < 3; ++round) {
    engine.probe(sourceUri(playing.sample));
    expectSame("open", kSuccess, engine.open(sourceUri(playing.sample)));
  }
  expect(engine.record.foul().empty(), engine.record.foul());
  static_cast<void>(engine.activate());
}

void isSilentWhenReleased(const Subject& subject) {
  WatchedEngine engine(subject);
  static_cast<void>(engine.container());
  engine.container().deactivate(false);
  engine.record.take();
  engine.isLetGo = true;
  engine.plugin.reset();
  const auto calls = engine.record.take();
  expect(calls.empty(), "the component called " + (calls.empty() ? "" : calls.front()) +
                            " while it was destroyed");
}

constexpr ContractCheck kChecks[] = {
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
    {"settings.silent-end", kTables, "a component calls nobody while it is destroyed",
     isSilentWhenReleased},
};

}  // namespace

std::span<const ContractCheck> settingsChecks() { return kChecks; }

}  // namespace Ombe
