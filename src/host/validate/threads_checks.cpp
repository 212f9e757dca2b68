// Many threads on one component, and many components.
#include <atomic>
#include <barrier>
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

/// Does `work` with the number of the thread on each, all at once.
template <typename Work>
void together(int count, const Work& work) {
  std::barrier start(count);
  std::vector<std::jthread> threads;
  threads.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    threads.emplace_back([&start, &work, i] {
      start.arrive_and_wait();
      work(i);
    });
  }
}

/// Every other thread reads, again and again, while the others do `work` with their round.
template <typename Work>
void whileRead(StreamInterface& stream, int threads, int rounds, const Work& work) {
  together(threads, [&](int number) {
    for (int round = 0; round < rounds; ++round) {
      if (number % 2 != 0) {
        work(round);
      } else if (readOne(stream) == "end") {
        stream.resetStream();
      }
    }
  });
}

/// What one thread may do while others read.
void disturb(Playing& playing, int kind, int round) {
  StreamInterface& stream = playing.stream;
  std::uint32_t found = 0;
  if (kind == 0) stream.seekStream(static_cast<std::uint32_t>(round * 100), &found, false);
  if (kind == 1) stream.getNextChunkTime(0, 1500, &found);
  if (kind == 2) stream.setTimeSource(&playing.clock);
  if (kind == 3) stream.resetStream();
  if (kind == 4) stream.setReadSpeed(round % 2 == 0 ? -1000 : 1000);
}

void readsAndIsMoved(Playing& playing) {
  const auto entries = readAll(playing.stream);
  const std::set<std::string> known(entries.begin(), entries.end());
  together(kThreadCount, [&](int number) {
    for (int round = 0; round < kRounds; ++round) {
      if (number % 2 != 0) {
        disturb(playing, round % 5, round);
        continue;
      }
      const std::string one = readOne(playing.stream);
      expect(one == "end" || known.contains(one), "an entry was read that is none: " + one);
    }
  });
  playing.stream.setReadSpeed(1000);
  playing.stream.resetStream();
  expect(readAll(playing.stream) == entries, "afterwards other entries are read");
}

void isNotified(Playing& playing) {
  const auto& consumers = playing.controller.consumers;
  if (consumers.empty()) report(Outcome::kNotOffered, "it registers no consumer");
  SettingConsumer& consumer = **consumers.begin();
  String page("UTF-8");
  const SettingValue values[] = {SettingValue::ratio({25, 1}), SettingValue::ratio({24, 1}),
                                 SettingValue::string(&page), SettingValue::boolean(false)};
  whileRead(playing.stream, kThreadCount, kRounds, [&](int round) {
    consumer.settingChanged(frameRateSetting(), &values[round % 4]);
    consumer.settingChanged(codePageSetting(), &values[round % 4]);
  });
}

void isActivatedAgain(Playing& playing) {
  whileRead(playing.stream, 2, kRounds, [&](int /*round*/) {
    expectSame("deactivate that keeps streams", kSuccess, playing.container().deactivate(true));
    expectSame("activateProgram", kSuccess, playing.activate());
  });
}

void isReleasedWhileRead(Playing& playing) {
  playing.host.keepsWithdrawn = true;
  const std::string uri = sourceUri(playing.sample);
  whileRead(playing.stream, 2, kRounds / 5, [&](int /*round*/) {
    expectSame("deactivate", kSuccess, playing.container().deactivate(false));
    expectSame("open", kSuccess, playing.open(uri));
    expectSame("activateProgram", kSuccess, playing.activate());
  });
}

void playApart(const Subject& subject) {
  requireSamples(subject);
  const std::string& sample = subject.samples.front();
  together(kThreadCount, [&](int /*number*/) {
    for (int round = 0; round < 5; ++round) {
      WatchedEngine engine(subject);
      StreamInterface& stream = engine.play(sample);
      const auto entries = readAll(stream);
      stream.resetStream();
      expect(readAll(stream) == entries, "components on several threads read otherwise");
    }
  });
}

void areMadeTogether(const Subject& subject) {
  together(kThreadCount, [&](int /*number*/) {
    for (int round = 0; round < 50; ++round) {
      WatchedEngine engine(subject, WatchedEngine::Attach::kLater);
      engine.isLetGo = true;
      expectSame("release", 0, engine.plugin.release()->release());
    }
  });
}

void countTogether(const Subject& subject) {
  WatchedEngine engine(subject, WatchedEngine::Attach::kLater);
  together(kThreadCount, [&](int /*number*/) {
    for (int round = 0; round < 1000; ++round) {
      engine.plugin->retain();
      engine.plugin->release();
    }
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

constexpr ContractCheck kChecks[] = {
    {"threads.no-lock-kept", kThreads, "no operation leaves the lock held", leavesNoLock},
    {"threads.read-and-move", kThreads,
     "reads, seeks and changes of speed may come from several threads", readsAndIsMoved},
    {"threads.notify", kThreads, "notifications may come while others read", isNotified},
    {"threads.activate", kThreads, "the program may be activated again while others read",
     isActivatedAgain},
    {"threads.release", kThreads, "streams may be released and opened anew while others read",
     isReleasedWhileRead},
    {"threads.components-apart", kThreads, "components on several threads share nothing",
     playApart},
    {"threads.make", kGettingAComponent, "components may be made on several threads at once",
     areMadeTogether},
    {"threads.count", kTables, "retain and release may come from several threads", countTogether},
};

}  // namespace

std::span<const ContractCheck> threadsChecks() { return kChecks; }

}  // namespace Ombe
