// Many threads on one component, and several components at once; to be run under the thread
// sanitizer.
#include <dlfcn.h>
#include <gmock/gmock.h>

#include <barrier>
#include <map>
#include <thread>

#include "ombe_core/logger.h"
#include "support/allocation_faults.h"
#include "support/fakes.h"

namespace ombe_test {
namespace {

using Ombe::kSuccess;

constexpr int kRounds = 10000;
constexpr int kStride = 3;  // no thread runs further ahead of another

/// Two entries at 1,024 frames a second, of 500 ms each. A change of rate to half of it and back is
/// exact.
constexpr const char* kContent = "{1}{1}1024\n{1024}{1536}\xB3\xB9\n{2048}{2560}\xB3\xB9\n";

/// An engine that plays, with what each thread does to it.
struct Player {
  Player() {
    engine.clock.now = 2147483000;
    engine.host.settings.setString("CodePage", "Name", "CP1250");
    stream = engine.play(kContent);
    consumer = engine.controller.consumers.front();
  }

  void read(int /*round*/) {
    const std::string one = readOne(*stream);
    if (one == "end") return static_cast<void>(stream->resetStream());
    ++delivered;
    const std::string time = one.substr(0, one.find(' ')), text = one.substr(time.size());
    EXPECT_TRUE(text == " \u0142\u0105" || text == " \u0456\u2116") << one;
    EXPECT_THAT(time, testing::AnyOf("1000+500", "2000+500", "2000+1000", "4000+1000"));
  }
  void seek(int round) {
    std::uint32_t found = 0;
    seeks += stream->seekStream(static_cast<std::uint32_t>(round % 5000), &found, false) == 0;
    stream->getNextChunkTime(0, 1500, &found);
    stream->setTimeSource(&engine.clock);
  }
  void changeSpeed(int round) {
    constexpr std::int32_t kSpeeds[] = {-1000, 0, 1000, 2000};
    seeks += stream->readSpeed() != 0;
    EXPECT_TRUE(stream->setReadSpeed(kSpeeds[round % 4]));
  }
  /// Straight, without the controller, whose lock might keep threads apart.
  void changeRate(int round) {
    const auto ratio = Ombe::SettingValue::ratio({round % 2 == 0 ? 512U : 1024U, 1});
    consumer->settingChanged(rateSetting, &ratio);
  }
  void notify(int round) {
    changeRate(round);
    engine.controller.changeCodePage(round % 2 == 0 ? "CP1251" : "CP1250");
  }
  void activate(int /*round*/) {
    EXPECT_EQ(engine.component.container->deactivate(true), kSuccess);
    EXPECT_EQ(engine.activate(), kSuccess);
  }
  void expectTheCountsToAddUp() {
    EXPECT_EQ(engine.controller.consumers.size(), 1);
    std::map<std::string, int> times;
    for (const std::string& call : engine.host.calls.take()) ++times[call];
    EXPECT_EQ(times["unregister"], 2 * kRounds);
    for (const char* call : {"register", "announce 1", "select 1 1"}) {
      EXPECT_EQ(times[call], 2 * kRounds + 1) << call;
    }
    stream->setReadSpeed(1000);
    stream->resetStream();
    engine.controller.changeRatio(512, 1);
    engine.controller.changeCodePage("CP1250");
    EXPECT_EQ(readAll(*stream), "2000+1000 \u0142\u0105 ; 4000+1000 \u0142\u0105");
  }

  Engine engine;
  Ombe::StreamInterface* stream;
  Ombe::SettingConsumer* consumer;
  const Ombe::Setting rateSetting{Ombe::MediaType::kSubtitle, "FrameRate", "Ratio"};
  std::atomic<long> delivered{0}, seeks{0};
};

/// Does `work` on each thread, whose number it is given.
template <typename Work>
void runTogether(std::ptrdiff_t count, Work work) {
  std::barrier together(count);
  std::vector<std::jthread> threads;
  threads.reserve(static_cast<std::size_t>(count));
  for (std::ptrdiff_t i = 0; i < count; ++i) threads.emplace_back([&, i] { work(i, together); });
}

TEST(Threads, MayAllConvertForTheFirstTime) {
  const std::string library = "libicuuc.so." + std::to_string(OMBE_ICU_VERSION);
  ASSERT_EQ(::dlopen(library.c_str(), RTLD_LAZY | RTLD_NOLOAD), nullptr) << "no longer the first";
  runTogether(4, [](std::ptrdiff_t, auto& together) {
    const Player player;
    together.arrive_and_wait();
    EXPECT_EQ(readOne(*player.stream), "1000+500 \u0142\u0105");
  });
}

TEST(Threads, MayReopenAndReleaseWhileOthersReadAndNotify) {
  Player player;
  const TempFile file(kContent);
  player.engine.host.keepsWithdrawn = true;
  std::atomic<Ombe::StreamInterface*> newest{player.stream};
  runTogether(4, [&](std::ptrdiff_t i, auto& together) {
    for (int round = 0; round < kRounds / 10; ++round) {
      if (round % kStride == 0) together.arrive_and_wait();
      if (i == 0) player.stream = newest, player.read(round);
      if (i == 1) player.notify(round);
      for (int change = 0; i == 2 && change < 50; ++change) player.changeRate(change);
      if (i != 3) continue;
      EXPECT_EQ(player.engine.component.container->deactivate(false), kSuccess);
      EXPECT_EQ(player.engine.open(file.uri()), kSuccess);
      EXPECT_EQ(player.engine.activate(), kSuccess);
      player.engine.newestStream()->setTimeSource(&player.engine.clock);
      newest = player.engine.newestStream();
    }
  });
}

/// What a component stores reaches the others before the call returns.
TEST(Threads, MayReopenComponentsOnOneControllerThatTellsAtOnce) {
  Engine engines[3];
  Ombe::SubtitleController& shared = engines[0].controller;
  for (Engine& engine : engines) {
    engine.component.control->setSubtitleController(&shared);
    engine.host.stored = [&](const Ombe::Setting& setting, const Ombe::SettingValue& value) {
      engines[0].controller.change(view(setting.group()).data(), view(setting.name()).data(),
                                   &value);
    };
    EXPECT_NE(engine.play(kContent), nullptr);
  }
  const TempFile plain(kContent), isSigned("\xEF\xBB\xBF{1}{2}a\n");
  runTogether(std::ssize(engines), [&](std::ptrdiff_t i, auto& together) {
    together.arrive_and_wait();
    for (int round = 0; round < kRounds / 10; ++round) {
      EXPECT_EQ(engines[i].component.container->deactivate(false), kSuccess);
      EXPECT_EQ(engines[i].activate(), kSuccess);  // told of what others store while it opens
      EXPECT_EQ(engines[i].open((round % 2 == 0 ? plain : isSigned).uri()), kSuccess);
      EXPECT_EQ(engines[i].activate(), kSuccess);
      engines[i].newestStream()->setTimeSource(&engines[i].clock);
      engines[i].clock.now = 2147483000;
      readOne(*engines[i].newestStream());
    }
  });
}

TEST(Threads, MayReadSeekNotifyAndActivateAtTheSameTime) {
  using Work = void (Player::*)(int);
  constexpr Work kWorks[] = {&Player::read,    &Player::seek,   &Player::changeSpeed,
                             &Player::notify,  &Player::notify, &Player::activate,
                             &Player::activate};
  Player().read(0);  // makes what lives as long as the process
  const long live = liveAllocations();
  {
    std::atomic<long> reads{0}, seeks{0};
    Player players[3];
    Ombe::Logger::instance().setSink(
        [&](const Ombe::LogRecord& record) { ++(record.line == 795 ? reads : seeks); });
    runTogether(std::ssize(players) * std::ssize(kWorks), [&](auto i, auto& together) {
      for (int round = 0; round < kRounds; ++round) {
        if (round % kStride == 0) together.arrive_and_wait();
        (players[i % 3].*kWorks[i / 3])(round);
      }
    });
    Ombe::Logger::instance().setSink({});
    for (Player& player : players) {
      reads -= player.delivered;
      seeks -= player.seeks;
      player.expectTheCountsToAddUp();
    }
    EXPECT_EQ(reads, 0);
    EXPECT_EQ(seeks, 0);
  }
  EXPECT_EQ(liveAllocations(), live);
}

}  // namespace
}  // namespace ombe_test
