// One source in an engine's hands: settings, frame rates, the session.
#include "host/session/session.h"

#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <thread>

#include "host/check/fitted_times.h"
#include "host/text/number_text.h"
#include "ombe_core/subtitle_settings.h"
#include "support/paths.h"
#include "support/run_program.h"

namespace ombe_test {
namespace {

using namespace Ombe;  // NOLINT(google-build-using-namespace): the subject of every test here

SettingValue stringValue(const char* text) { return SettingValue::string(new String(text)); }

struct Consumer : SettingConsumer {
  void settingChanged(const Setting& setting, const SettingValue* value) override {
    act(setting, *value);
  }
  std::function<void(const Setting&, const SettingValue&)> act;
};

struct Settings : testing::Test {
  HostController controller;
  HostContainer host{controller};
};

TEST_F(Settings, KeepEveryStringOnceAndForGood) {
  SettingValue first, again;
  EXPECT_FALSE(host.getValue(codePageSetting(), first));
  host.setValue(codePageSetting(), stringValue("CP1250"));
  ASSERT_TRUE(controller.getValue(codePageSetting(), first));
  host.setValue(codePageSetting(), stringValue("UTF8"));
  EXPECT_EQ(view(*first.asString()), "CP1250");
  controller.setValue(codePageSetting(), stringValue("CP1250"));
  controller.setValue(codePageSetting(), first);  // handed back: it is the table's own
  ASSERT_TRUE(host.getValue(codePageSetting(), again));
  EXPECT_EQ(again.asString(), first.asString());
  EXPECT_FALSE(host.getValue(Setting(MediaType{3}, "CodePage", "Name"), again));
}

TEST_F(Settings, AreStoredFirstAndToldAfterwardsWithoutALock) {
  std::string told;
  Consumer leaving, taken, staying;
  leaving.act = [&](const Setting& setting, const SettingValue& value) {
    SettingValue stored;
    EXPECT_TRUE(controller.getValue(setting, stored));
    EXPECT_EQ(stored.asString(), value.asString());
    EXPECT_TRUE(controller.unregisterConsumer(&leaving));
    EXPECT_TRUE(controller.unregisterConsumer(&taken));
    told += "leaving ";
  };
  taken.act = [&](auto&, auto&) { told += "taken "; };
  staying.act = [&](auto&, auto& value) { told += view(*value.asString()); };
  for (Consumer* one : {&leaving, &taken, &staying}) EXPECT_TRUE(controller.registerConsumer(one));
  EXPECT_FALSE(controller.registerConsumer(&staying));
  controller.setValue(codePageSetting(), stringValue("a"));
  host.setValue(codePageSetting(), stringValue("b"));  // as a plug-in does
  EXPECT_EQ(told, "leaving ab");
}

TEST_F(Settings, ConsumersAreGoneOnlyWhenNoOtherThreadIsTellingThem) {
  Consumer consumer;
  std::atomic<bool> began{false};
  bool ended = false;
  consumer.act = [&](auto&, auto&) {
    began = true;
    // Succeeds once the other thread has taken the consumer out and waits.
    while (!controller.registerConsumer(&consumer)) std::this_thread::yield();
    controller.unregisterConsumer(&consumer);
    ended = true;
  };
  controller.registerConsumer(&consumer);
  std::thread teller([&] { host.setValue(autodetectedSetting(), SettingValue::boolean(true)); });
  while (!began) std::this_thread::yield();
  controller.unregisterConsumer(&consumer);
  EXPECT_TRUE(ended);
  teller.join();
}

TEST(FrameRate, IsTakenAsAnExactFraction) {
  std::istringstream texts(
      "25 23.976 24000/1001 0/7 25/0 4294967295 0.000000001 0.0000000001 4294967296 1/4294967296  "
      "25. .5 25/ /1 -25 +25 25x 1/2/3 1.5/2 29,97");
  std::string rates;
  for (std::string text; std::getline(texts, text, ' ');) {
    const auto rate = parseFrameRate(text);
    rates += !rate
                 ? "-"
                 : " " + std::to_string(rate->numerator) + "/" + std::to_string(rate->denominator);
  }
  EXPECT_EQ(rates, " 25/1 23976/1000 24000/1001 0/7 25/0 4294967295/1 1/1000000000--------------");
}

TEST(Session, OwnsStreamsUntilWithdrawnAndReadsWhatIsDue) {
  const TempFile movie("{1}{1}25\n{25}{50}a\n");
  Session session({.language = "pol", .offsetMs = 1000, .plugin = kPlugin});
  EXPECT_EQ(view(session.host().preferredLanguage()), "pol");
  session.open(movie.path());
  session.container().activateProgram(session.container().getProgramUIDs().head()->value);
  EXPECT_EQ(session.host().streams().size(), 1U) << "announced twice, owned once";
  Chunk chunk;
  session.clock().set(1499);
  EXPECT_EQ(session.read(chunk), kNothingDue);
  session.clock().set(1500);
  EXPECT_EQ(session.read(chunk), kSuccess);
  ASSERT_TRUE(chunk);
  EXPECT_EQ(chunk.timestamp(), 2000U);
  EXPECT_EQ(session.container().deactivate(false), kSuccess);
  EXPECT_EQ(session.host().selectedStream(), nullptr);
}

/// Starts of the subtitles, and the rate that is set.
std::pair<std::vector<double>, Ratio> playedTimes(const std::string& path, const FilmTimes& times) {
  Session session({.plugin = kPlugin});
  session.open(path);
  fitTimes(session, path, times);
  std::pair<std::vector<double>, Ratio> played({}, {0, 1});
  session.readToEnd([&](const Chunk& chunk) { played.first.push_back(chunk.timestamp()); });
  SettingValue value;
  if (session.controller().getValue(frameRateSetting(), value)) played.second = *value.asRatio();
  return played;
}

TEST(FilmTimes, MeetBothPointsWithinAMillisecond) {
  std::mt19937 random(1);
  const auto below = [&random](unsigned bound) { return static_cast<unsigned>(random()) % bound; };
  const char* const headers[] = {"", "{1}{1}25\n", "{1}{1}24000/1001\n", "{1}{1}29,97\n"};
  for (int run = 0; run < 400; ++run) {
    const unsigned first = below(run % 2 == 0 ? 1000 : 250000), last = first + 1 + below(250000);
    const TempFile movie(headers[below(4)] + ("{" + std::to_string(first) + "}{9999999}a\n{" +
                                              std::to_string(last) + "}{9999999}b\n"));
    const std::vector<double> from = playedTimes(movie.path(), {}).first;
    const double start = below(10000000);
    const double end = start + std::round((from[1] - from[0]) * (100 + below(4000)) / 2000 + 1);
    FilmTimes times{{{from[0], start}, {from[1], end}}};
    ASSERT_EQ(objectionTo(times.points), "");
    if (run % 3 == 0) std::swap(times.points[0], times.points[1]);
    const std::vector<double> to = playedTimes(movie.path(), times).first;
    SCOPED_TRACE(testing::Message() << first << " " << last << " " << start << " " << end);
    EXPECT_NEAR(to[0], start, 1);
    EXPECT_NEAR(to[1], end, 1);
  }
}

TEST(FilmTimes, AreOfAUsualRateWhereThatFits) {
  const TempFile movie("{1}{1}25\n{250}{300}a\n{150000}{150100}b\n");
  for (const Ratio rate : kUsualRates) {
    const double start = std::round(250 / perSecond(rate) * 1000);
    const double end = std::round(150000 / perSecond(rate) * 1000);
    const auto [starts, set] = playedTimes(movie.path(), {{{10000, start}, {6000000, end}}});
    EXPECT_EQ(set.numerator, rate.numerator);
    EXPECT_EQ(set.denominator, rate.denominator);
  }
}

}  // namespace
}  // namespace ombe_test
