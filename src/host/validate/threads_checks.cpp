// Many threads on one component, and many components.
#include <atomic>
#include <barrier>
#include <functional>
#include <set>
#include <thread>

#include "host/session/source.h"
#include "host/validate/verdict.h"
#include "host/validate/watched_engine.h"
#include "ombe_core/setting_consumer.h"
#include "ombe_core/subtitle_settings.h"

namespace Ombe {
namespace {

constexpr int kThreadCount = 4;
constexpr int kRounds = 500;
constexpr int kStride = 3;  // no thread runs further ahead of another

using Work = std::function<void(int round)>;

/// Does each of `works` on a thread of its own.
void together(int rounds, const std::vector<Work>& works) {
  std::barrier inStep(std::ssize(works));
  std::vector<std::jthread> threads;
  threads.reserve(works.size());
  for (const Work& work : works) {
    threads.emplace_back([&inStep, &work, rounds] {
      for (int round = 0; round < rounds; ++round) {
        if (round % kStride == 0) inStep.arrive_and_wait();
        work(round);
      }
    });
  }
}

/// Does `work` on several threads.
void together(int rounds, const Work& work) { together(rounds, std::vector(kThreadCount, work)); }

/// Reads on, and over again from the end.
Work readingOf(StreamInterface& stream) {
  return [&](int) {
    if (readOne(stream) == "end") stream.resetStream();
  };
}

/// What one thread may do while others read.
Work movingOf(Playing& playing) {
  return [&](int round) {
    StreamInterface& stream = playing.stream;
    std::uint32_t found = 0;
    const int turn = round % 5;
    if (turn == 0) stream.seekStream(static_cast<std::uint32_t>(round * 100), &found, false);
    if (turn == 1) stream.getNextChunkTime(0, 1500, &found);
    if (turn == 2) stream.setTimeSource(&playing.clock);
    if (turn == 3) stream.resetStream();
    if (turn == 4) stream.setReadSpeed(round % 2 == 0 ? -1000 : 1000);
  };
}

/// Tells the consumers as a controller does.
Work changingOf(Playing& playing) {
  return [&](int round) {
    const bool isEven = round % 2 == 0;
    playing.controller.setValue(frameRateSetting(), SettingValue::ratio({isEven ? 25U : 50U, 1}));
    playing.controller.setValue(codePageSetting(),
                                SettingValue::string(new String(isEven ? "UTF-8" : "CP1252")));
  };
}

/// The program, which only one thread may ask for.
UID programOf(const Playing& playing) {
  const UIDList programs = playing.container().getProgramUIDs();
  expect(programs.head() != nullptr, "getProgramUIDs gave none");
  return programs.head()->value;
}

Work activatingOf(Playing& playing) {
  return [&, program = programOf(playing)](int) {
    expectSame("activateProgram", kSuccess, playing.container().activateProgram(program));
  };
}

/// Registers it again and again; for one thread.
Work deactivatingOf(Playing& playing) {
  return [&, activate = activatingOf(playing)](int round) {
    expectSame("deactivate that keeps streams", kSuccess, playing.container().deactivate(true));
    activate(round);
  };
}

void readsAndIsMoved(Playing& playing) {
  const auto entries = readAll(playing.stream);
  const std::set<std::string> known(entries.begin(), entries.end());
  const Work read = [&](int) {
    const std::string one = readOne(playing.stream);
    expect(one == "end" || known.contains(one), "an entry was read that is none: " + one);
  };
  together(kRounds, {read, read, movingOf(playing), movingOf(playing)});
  playing.stream.setReadSpeed(1000);
  expect(readAnew(playing.stream) == entries, "afterwards other entries are read");
}

/// Straight, without the controller, whose lock might keep threads apart.
void isNotified(Playing& playing) {
  const auto consumers = playing.controller.consumers();
  if (consumers.empty()) report(Outcome::kNotOffered, "it registers no consumer");
  SettingConsumer& consumer = **consumers.begin();
  String page("UTF-8"), other("CP1252");
  const SettingValue rates[] = {SettingValue::ratio({25, 1}), SettingValue::ratio({50, 1})};
  const SettingValue pages[] = {SettingValue::string(&page), SettingValue::string(&other)};
  const Work notify = [&](int round) {
    consumer.settingChanged(frameRateSetting(), &rates[round % 2]);
    consumer.settingChanged(codePageSetting(), &pages[round % 2]);
  };
  together(kRounds, {readingOf(playing.stream), readingOf(playing.stream), notify, notify});
}

void isActivatedAgain(Playing& playing) {
  together(kRounds, {readingOf(playing.stream), activatingOf(playing), deactivatingOf(playing)});
}

/// The one that is read becomes a withdrawn one, kept but without entries, again and again.
void isReleasedWhileRead(Playing& playing) {
  playing.host.keepsWithdrawn = true;
  std::atomic<StreamInterface*> newest = &playing.stream;
  const Work read = [&](int round) { readingOf (*newest)(round); };
  const Work rescale = [&](int round) {
    for (std::uint32_t i = 1; i <= 20; ++i) {
      const std::uint32_t rate = 20 + (static_cast<std::uint32_t>(round) + i) % 30;
      playing.controller.setValue(frameRateSetting(), SettingValue::ratio({rate, 1}));
    }
  };
  const Work release = [&](int) {
    expectSame("deactivate", kSuccess, playing.container().deactivate(false));
    newest = &playing.play(playing.sample);
  };
  together(kRounds / 5, {read, read, rescale, release});
}

void doesAllAtOnce(Playing& playing) {
  const auto entries = readAll(playing.stream).size();
  const Work read = readingOf(playing.stream), change = changingOf(playing);
  together(kRounds, {read, read, movingOf(playing), change, change, activatingOf(playing),
                     deactivatingOf(playing)});
  playing.stream.setReadSpeed(1000);
  expectSame("the number of entries afterwards", entries, readAnew(playing.stream).size());
}

void playApart(const Subject& subject) {
  requireSamples(subject);
  together(5, [&](int) {
    WatchedEngine engine(subject);
    StreamInterface& stream = engine.play(subject.samples.front());
    const auto entries = readAll(stream);
    expect(readAnew(stream) == entries, "components on several threads read otherwise");
  });
}

/// What a component stores reaches the others before the call returns, also while they open; what
/// they open then is converted by settings that change, and may be refused.
void shareAController(const Subject& subject) {
  requireSamples(subject);
  WatchedEngine first(subject);
  WatchedEngine second(subject, WatchedEngine::Attach::kNow, &first.controller);
  static_cast<void>(first.control());
  for (WatchedEngine* engine : {&first, &second}) engine->clock.set(PlaybackClock::kEnd);
  const auto play = [&](WatchedEngine& engine, int round) {
    const auto& samples = subject.samples;
    static_cast<void>(engine.activate());  // told from here on
    engine.open(sourceUri(samples[static_cast<std::size_t>(round) % samples.size()]));
    static_cast<void>(engine.activate());
    for (const auto& [uid, stream] : engine.host.streams) {
      stream->setTimeSource(&engine.clock);
      readOne(*stream);
    }
    expectSame("deactivate", kSuccess, engine.container().deactivate(false));
  };
  static_cast<void>(first.activate());
  first.record.comingBack = [&](const std::string& call) {
    if (!call.starts_with("setValue")) return;
    first.record.comingBack = nullptr;
    std::jthread([&] { play(second, 0); });
  };
  expectSame("open", kSuccess, first.open(sourceUri(subject.samples.front())));
  first.record.comingBack = nullptr;
  expectSame("activateProgram", kSuccess, first.activate());  // whose streams are the host's then
  first.container().deactivate(false);
  together(kRounds,
           {[&](int round) { play(first, round); }, [&](int round) { play(second, round / 2); }});
}

void areMadeTogether(const Subject& subject) {
  together(50, [&](int) {
    WatchedEngine engine(subject, WatchedEngine::Attach::kLater);
    engine.isLetGo = true;
    expectSame("release", 0, engine.plugin.release()->release());
  });
}

void countTogether(const Subject& subject) {
  WatchedEngine engine(subject, WatchedEngine::Attach::kLater);
  together(1000, [&](int) {
    engine.plugin->retain();
    engine.plugin->release();
  });
  expectSame("holdCount after as many releases as retains", 1, engine.plugin->holdCount());
  engine.isLetGo = true;
}

/// Asked on another thread, which waits for good when the lock is held.
void leavesNoLock(Playing& playing) {
  StreamInterface& stream = playing.stream;
  playing.host.keepsWithdrawn = true;
  const auto elsewhere = [&](const char* /*after*/) {
    std::jthread([&] {
      stream.setReadSpeed(1000);
      stream.resetStream();
      playing.container().deactivate(true);
    });
  };
  std::uint32_t out = 0;
  readOne(stream), elsewhere("readStream");
  stream.readStream(nullptr), elsewhere("readStream without an output");
  readAll(stream), elsewhere("readStream at the end");
  stream.seekStream(0, &out, true), elsewhere("seekStream");
  stream.getNextChunkTime(0, 0, &out), elsewhere("getNextChunkTime");
  stream.getNextChunkTime(0, 0, nullptr), elsewhere("getNextChunkTime without an output");
  stream.setTimeSource(nullptr), elsewhere("setTimeSource");
  stream.setReadSpeed(0), stream.seekStream(0, &out, true), elsewhere("seekStream on a pause");
  playing.open("file:///no/such.sub"), elsewhere("open of a missing file");
  playing.container().activateProgram(12345), elsewhere("activateProgram of another");
  static_cast<void>(playing.activate()), elsewhere("activateProgram");
  playing.open(sourceUri(playing.sample)), elsewhere("open");
  static_cast<void>(playing.activate());
  playing.container().deactivate(false), elsewhere("deactivate");
}

constexpr ContractCheck kThreadsChecks[] = {
    {"threads.no-lock-kept", kThreads, "no operation leaves the lock held", leavesNoLock},
    {"threads.read-and-move", kThreads,
     "reads, seeks and changes of speed may come from several threads", readsAndIsMoved},
    {"threads.notify", kThreads, "notifications may come while others read", isNotified},
    {"threads.activate", kThreads, "the program may be activated again while others read",
     isActivatedAgain},
    {"threads.release", kThreads, "streams may be released and opened anew while others read",
     isReleasedWhileRead},
    {"threads.all-at-once", kThreads,
     "reads, seeks, changes of settings and activations may all come at once", doesAllAtOnce},
    {"threads.shared-controller", kThreads,
     "components may be opened on several threads while one controller tells all of them",
     shareAController},
    {"threads.components-apart", kThreads, "components on several threads share nothing",
     playApart},
    {"threads.make", kGettingAComponent, "components may be made on several threads at once",
     areMadeTogether},
    {"threads.count", kTables, "retain and release may come from several threads", countTogether},
};

}  // namespace

std::span<const ContractCheck> threadsChecks() { return kThreadsChecks; }

}  // namespace Ombe
