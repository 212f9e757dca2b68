// Hosts that keep no rule: whatever one does, whatever it does next, and from within whatever call,
// a plug-in answers, leaves its lock free and plays on.
#include <fmt/core.h>

#include <algorithm>
#include <filesystem>
#include <limits>
#include <system_error>
#include <thread>

#include "host/session/source.h"
#include "host/validate/verdict.h"
#include "host/validate/watched_engine.h"
#include "ombe_core/logger.h"
#include "ombe_core/setting_consumer.h"
#include "ombe_core/subtitle_settings.h"

namespace Ombe {
namespace {

constexpr double kLeast = std::numeric_limits<std::int32_t>::min();
constexpr double kGreatest = std::numeric_limits<std::int32_t>::max();
constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// An engine with the newest of its streams, which outlive their withdrawal.
struct Victim {
  Victim(WatchedEngine& abused, const std::string& sample)
      : engine(abused), uri(sourceUri(sample)) {
    engine.host.keepsWithdrawn = true;
  }
  void reopen() {
    engine.open(uri);
    static_cast<void>(engine.activate());
    const auto& streams = engine.host.streams;
    if (!streams.empty()) stream = streams.rbegin()->second.get();
  }
  void tell(const SettingValue* value) const {
    static const Setting other(MediaType::kSubtitle, "", "");
    for (SettingConsumer* consumer : engine.controller.consumers()) {
      for (const Setting& setting :
           {frameRateSetting(), codePageSetting(), autodetectedSetting(), other}) {
        consumer->settingChanged(setting, value);
      }
    }
  }

  WatchedEngine& engine;
  const std::string uri;
  StreamInterface* stream = nullptr;
  const OddValues odd;
};

struct Abuse {
  const char* name;
  void (*commit)(Victim&, double);
  double number;
};

std::int32_t whole(double number) { return static_cast<std::int32_t>(number); }

void open(Victim& v, double) { v.reopen(); }
void openNothing(Victim& v, double) { v.engine.open(v.uri + "/none"); }
void probe(Victim& v, double) { v.engine.probe(v.uri); }
void deactivate(Victim& v, double keeps) { v.engine.container().deactivate(keeps != 0); }

void activate(Victim& v, double program) {
  if (program != 0) v.engine.container().activateProgram(static_cast<UID>(program));
  if (program == 0) static_cast<void>(v.engine.activate());
}

void tell(Victim& v, double which) { v.tell(which < 0 ? nullptr : &v.odd.values[whole(which)]); }

void tellToAndFro(Victim& v, double times) {
  const SettingValue rates[] = {SettingValue::ratio({24, 1}), SettingValue::ratio({25, 1})};
  for (int i = 0; i < whole(times); ++i) v.tell(&rates[i % 2]);
}

void putClock(Victim& v, double time) { v.engine.clock.set(whole(time)); }
void setOffset(Victim& v, double offset) { v.engine.host.offset = offset; }
void setSpeed(Victim& v, double speed) { v.stream->setReadSpeed(whole(speed)); }
void askForInfo(Victim& v, double) { v.stream->getStreamInfo(nullptr, nullptr, nullptr); }

void giveClock(Victim& v, double isThere) {
  v.stream->setTimeSource(isThere == 0 ? nullptr : &v.engine.clock);
}

void seek(Victim& v, double number) {
  const auto time = static_cast<std::uint32_t>(number);
  std::uint32_t found = 0;
  v.stream->getNextChunkTime(0, time, &found);
  v.stream->seekStream(time, nullptr, true);
}

using Abuses = std::vector<Abuse>;

void add(Abuses& all, const char* name, void (*commit)(Victim&, double),
         std::initializer_list<double> numbers = {0}) {
  for (const double number : numbers) all.push_back({name, commit, number});
}

Abuses containerAbuses() {
  Abuses all;
  add(all, "deactivate", deactivate, {0, 1});
  add(all, "activate", activate, {0, 12345});
  add(all, "open", open);
  add(all, "probe", probe);
  add(all, "open of nothing", openNothing);
  return all;
}

Abuses allAbuses() {
  Abuses all = containerAbuses();
  add(all, "notification", tell, {-1, 0, 1, 2, 3, 4, 5, 6, 7});
  add(all, "rates to and fro", tellToAndFro, {100});
  add(all, "clock", putClock, {kLeast, -1, 0, kGreatest - 499, kGreatest});
  add(all, "offset", setOffset, {kNone, kInfinity, -kInfinity, 1e300, -1e300, 4e9, -4e9});
  add(all, "speed", setSpeed, {kLeast, -1, 0, 1, kGreatest});
  add(all, "seek", seek, {0, 3001, 4294967295});
  add(all, "time source", giveClock, {0, 1});
  add(all, "info", askForInfo);
  return all;
}

/// What makes a plug-in call.
Abuses busyActs() {
  Abuses all;
  add(all, "clock", putClock, {9999});
  add(all, "seek", seek);
  add(all, "probe", probe);
  add(all, "open of nothing", openNothing);
  add(all, "open", open);
  add(all, "time source", giveClock, {1});
  add(all, "speed", setSpeed, {-1, 1});
  add(all, "deactivate", deactivate, {1});
  add(all, "activate", activate);
  add(all, "deactivate", deactivate, {0});
  add(all, "open", open);
  return all;
}

std::string textOf(const Abuse& abuse) { return fmt::format("{} {}", abuse.name, abuse.number); }

void commit(Victim& v, const Abuse& abuse) {
  abuse.commit(v, abuse.number);
  if (v.stream != nullptr) readOne(*v.stream);
}

/// A lock left behind stops the other thread for good.
void expectToPlayOn(Victim& v, const std::vector<std::string>& entries) {
  WatchedEngine& engine = v.engine;
  engine.clock.set(std::numeric_limits<std::int32_t>::max());
  engine.host.offset = 0;
  const SettingValue rate = SettingValue::ratio({25, 1});  // one by which all entries are due
  v.tell(&rate);
  if (v.stream != nullptr) {
    std::jthread([&] {
      v.stream->setTimeSource(&engine.clock);
      v.stream->setReadSpeed(1000);
      v.stream->resetStream();
    }).join();
    expectSame("the number of entries read then", engine.host.streams.empty() ? 0 : entries.size(),
               readAll(*v.stream).size());
  }
  expectSame("deactivate", kSuccess, engine.container().deactivate(false));
  engine.host.withdrawn.clear();
  v.reopen();
  expect(!engine.host.streams.empty(), "opened again, it announces no stream");
  v.stream->setTimeSource(&engine.clock);
  expect(readAll(*v.stream) == entries, "opened again, it reads otherwise");
}

/// The first small sample, which is opened and read to its end some ten thousand times.
const std::string& smallSample(const Subject& subject) {
  constexpr std::uintmax_t kLargest = 4096;
  requireSamples(subject);
  const auto isSmall = [](const std::string& sample) {
    std::error_code error;  // gives the greatest size
    return std::filesystem::file_size(sample, error) <= kLargest;
  };
  const auto small = std::ranges::find_if(subject.samples, isSmall);
  if (small == subject.samples.end()) report(Outcome::kNeedsSample, "name a file of 4 KiB at most");
  return *small;
}

/// What it reads once it has been told a code page, which notifications will change.
std::vector<std::string> toldEntries(Playing& playing) {
  playing.host.setValue(codePageSetting(), SettingValue::string(new String("UTF-8")));
  playing.container().deactivate(false);
  return readAll(playing.play(playing.sample));
}

void bearsAnyOrder(const Subject& subject) {
  Playing playing(subject, smallSample(subject));
  const auto entries = toldEntries(playing);
  Victim victim(playing, playing.sample);
  victim.reopen();
  const Abuses abuses = allAbuses();
  for (const Abuse& first : abuses) {
    for (const Abuse& second : abuses) {
      setPlace(textOf(first) + ", " + textOf(second) + ": ");
      for (const Abuse* abuse : {&first, &second, &first}) commit(victim, *abuse);
      expectToPlayOn(victim, entries);
    }
  }
}

void bearsAnyOrderBeforeAttach(const Subject& subject) {
  Playing playing(subject, smallSample(subject));
  const auto entries = toldEntries(playing);
  const Abuses abuses = containerAbuses();
  for (const Abuse& first : abuses) {
    WatchedEngine engine(subject, WatchedEngine::Attach::kLater, &playing.controller);
    Victim victim(engine, playing.sample);
    for (const Abuse& second : abuses) {
      setPlace(textOf(first) + ", " + textOf(second) + ": ");
      for (const Abuse* abuse : {&first, &second, &first}) commit(victim, *abuse);
    }
    engine.attach();
    expectToPlayOn(victim, entries);
  }
}

using Calls = std::initializer_list<std::string_view>;

bool isAmong(Calls calls, std::string_view call) {
  return std::ranges::find(calls, call) != calls.end();
}

/// Whether the host may release streams there: some are not announced yet, or one is read.
bool mayRelease(std::string_view within) {
  return !isAmong(
      {"registerConsumer", "preferredLanguage", "announceStream", "controller getValue"}, within);
}

/// Comes back from within the first calls that each act makes so; whether there was one.
bool abuseWithin(Victim& v, std::string_view within, const Abuse& abuse) {
  bool cameBack = false;
  for (const Abuse& act : busyActs()) {
    int left = 3;
    bool isWithin = false;
    v.engine.record.comingBack = [&](const std::string& call) {
      if (isWithin || left == 0 || !call.starts_with(within)) return;
      --left;
      cameBack = isWithin = true;
      commit(v, abuse);
      isWithin = false;
    };
    commit(v, act);
    v.engine.record.comingBack = nullptr;
  }
  return cameBack;
}

/// Whether a stream cannot be had or read without this call.
bool isNeeded(std::string_view call) {
  return isAmong({"newUID", "announceStream", "withdrawStream", "selectStream", "currentTime"},
                 call);
}

void bearsAnyCallBack(const Subject& subject) {
  Playing playing(subject, smallSample(subject));
  const auto entries = toldEntries(playing);
  Victim victim(playing, playing.sample);
  victim.reopen();
  Logger::instance().setSink([&](const LogRecord&) { playing.record.comeBack("log"); });
  for (const char* within :
       {"getValue", "setValue", "newUID", "preferredLanguage", "getTimeOffset", "announceStream",
        "withdrawStream", "selectStream", "currentTime", "registerConsumer", "unregisterConsumer",
        "controller getValue", "supportsFormat", "log"}) {
    for (const Abuse& abuse : allAbuses()) {
      const bool releases = abuse.commit == deactivate && abuse.number == 0;
      if (releases && !mayRelease(within)) continue;
      setPlace(textOf(abuse) + " from within " + within + ": ");
      expect(abuseWithin(victim, within, abuse) || !isNeeded(within), "it was never called");
      expectToPlayOn(victim, entries);
    }
  }
  Logger::instance().setSink({});
}

constexpr ContractCheck kMisuseChecks[] = {
    {"misuse.any-order", kForgiveness,
     "whatever a host does, and whatever next, is answered, and everything plays on",
     bearsAnyOrder},
    {"misuse.before-attach", kForgiveness,
     "whatever a host does before attach is answered, and everything plays afterwards",
     bearsAnyOrderBeforeAttach},
    {"misuse.from-within", kForgiveness,
     "whatever a host does from within any call is answered, and everything plays on",
     bearsAnyCallBack},
};

}  // namespace

std::span<const ContractCheck> misuseChecks() { return kMisuseChecks; }

}  // namespace Ombe
