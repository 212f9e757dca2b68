// Many threads on one component, and several components at once; to be run under the thread
// sanitizer.
#include <dlfcn.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <barrier>
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
    if (one == "end") {
      stream->resetStream();
      return;
    }
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
  /// Also straight, without the controller, which might keep notifications apart by its lock.
  void notify(int round) {
    const auto ratio = Ombe::SettingValue::ratio({round % 2 == 0 ? 512U : 1024U, 1});
    consumer->settingChanged(rateSetting, &ratio);
    engine.controller.changeCodePage(round % 2 == 0 ? "CP1251" : "CP1250");
  }
  void activate(int /*round*/) {
    EXPECT_EQ(engine.component.container->deactivate(true), kSuccess);
    EXPECT_EQ(engine.activate(), kSuccess);
  }
  void expectTheCountsToAddUp() {
    EXPECT_EQ(engine.controller.consumers.size(), 1);
    const auto calls = engine.host.calls.take();
    const auto times = [&](const char* call) {
      return std::count(calls.begin(), calls.end(), call);
    };
    EXPECT_EQ(times("register"), 2 * kRounds + 1);
    EXPECT_EQ(times("unregister"), 2 * kRounds);
    EXPECT_EQ(times("announce 1"), 2 * kRounds + 1);
    EXPECT_EQ(times("select 1 1"), 2 * kRounds + 1);
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

TEST(Threads, MayAllConvertForTheFirstTime) {
  const std::string library = "libicuuc.so." + std::to_string(OMBE_ICU_VERSION);
  ASSERT_EQ(::dlopen(library.c_str(), RTLD_LAZY | RTLD_NOLOAD), nullptr) << "no longer the first";
  constexpr int kThreads = 4;
  std::barrier start(kThreads);
  std::vector<std::jthread> threads;
  threads.reserve(kThreads);
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&start] {
      const Player player;
      start.arrive_and_wait();
      EXPECT_EQ(readOne(*player.stream), "1000+500 \u0142\u0105");
    });
  }
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
    {
      std::barrier together(std::ssize(players) * std::ssize(kWorks));
      std::vector<std::jthread> threads;
      for (Player& player : players) {
        for (const Work work : kWorks) {
          threads.emplace_back([&player, &together, work] {
            for (int round = 0; round < kRounds; ++round) {
              if (round % kStride == 0) together.arrive_and_wait();
              (player.*work)(round);
            }
          });
        }
      }
    }
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
