// What threads may see of MicroDVD entries while settings change; to be run under the thread
// sanitizer. That calls may come from any thread is for `ombe validate` to ask.
#include <dlfcn.h>
#include <gmock/gmock.h>

#include <barrier>
#include <thread>

#include "support/fakes.h"

namespace ombe_test {
namespace {

constexpr int kRounds = 10000;
constexpr int kStride = 3;  // no thread runs further ahead of another

/// Two entries at 1,024 frames a second, of 500 ms each. A change of rate to half of it and back is
/// exact.
constexpr const char* kContent = "{1}{1}1024\n{1024}{1536}\xB3\xB9\n{2048}{2560}\xB3\xB9\n";

/// An engine that plays.
struct Player {
  Player() {
    engine.clock.now = 2147483000;
    engine.host.settings.setString("CodePage", "Name", "CP1250");
    stream = engine.play(kContent);
  }
  void read() const {
    const std::string one = readOne(*stream);
    if (one == "end") return static_cast<void>(stream->resetStream());
    const std::string time = one.substr(0, one.find(' ')), text = one.substr(time.size());
    EXPECT_TRUE(text == " \u0142\u0105" || text == " \u0456\u2116") << one;
    EXPECT_THAT(time, testing::AnyOf("1000+500", "2000+500", "2000+1000", "4000+1000"));
  }
  /// Straight, without the controller, whose lock might keep threads apart.
  void changeRate(int round) const {
    const auto ratio = Ombe::SettingValue::ratio({round % 2 == 0 ? 512U : 1024U, 1});
    engine.controller.consumers.front()->settingChanged(rateSetting, &ratio);
  }

  Engine engine;
  Ombe::StreamInterface* stream;
  const Ombe::Setting rateSetting{Ombe::MediaType::kSubtitle, "FrameRate", "Ratio"};
};

/// Does `work` on each thread, whose number it is given.
template <typename Work>
void runTogether(int count, Work work) {
  std::barrier together(count);
  std::vector<std::jthread> threads;
  threads.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) threads.emplace_back([&, i] { work(i, together); });
}

TEST(Threads, MayAllConvertForTheFirstTime) {
  const std::string library = "libicuuc.so." + std::to_string(OMBE_ICU_VERSION);
  ASSERT_EQ(::dlopen(library.c_str(), RTLD_LAZY | RTLD_NOLOAD), nullptr) << "no longer the first";
  runTogether(4, [](int, auto& together) {
    const Player player;
    together.arrive_and_wait();
    EXPECT_EQ(readOne(*player.stream), "1000+500 \u0142\u0105");
  });
}

TEST(Threads, ReadEntriesAsOneSettingOrAnotherMakesThem) {
  Player player;
  runTogether(6, [&](int i, auto& together) {
    for (int round = 0; round < kRounds; ++round) {
      if (round % kStride == 0) together.arrive_and_wait();
      if (i < 2) player.read();
      if (i == 2 || i == 3) player.changeRate(round);
      if (i == 4) player.engine.controller.changeCodePage(round % 2 == 0 ? "CP1251" : "CP1250");
      if (i == 5) player.stream->setReadSpeed(round % 2 == 0 ? -1000 : 1000);
    }
  });
  player.stream->setReadSpeed(1000);
  player.stream->resetStream();
  player.engine.controller.changeRatio(512, 1);
  player.engine.controller.changeCodePage("CP1250");
  EXPECT_EQ(readAll(*player.stream), "2000+1000 \u0142\u0105 ; 4000+1000 \u0142\u0105");
}

}  // namespace
}  // namespace ombe_test
