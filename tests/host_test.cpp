// The host's own rules, and the built `ombe` as people meet it.
#include <gmock/gmock.h>

#include <csignal>
#include <thread>

#include "host/io/failure.h"
#include "host/io/output_file.h"
#include "host/session/frame_rate.h"
#include "host/session/session.h"
#include "host/session/settings.h"
#include "host/text/visible_text.h"
#include "host/writers/subtitle_writer.h"
#include "support/run_program.h"
#include "support/table.h"

namespace ombe_test {
namespace {

namespace fs = std::filesystem;
using namespace Ombe;  // NOLINT(google-build-using-namespace): the subject of every test here
using testing::HasSubstr;

SettingValue stringValue(const char* text) { return SettingValue::string(new String(text)); }

struct Consumer : SettingConsumer {
  void settingChanged(const Setting& setting, const SettingValue* value) override {
    act(setting, *value);
  }
  std::function<void(const Setting&, const SettingValue&)> act;
};

struct Settings : testing::Test {
  SettingTable table;
  HostController controller{table};
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

TEST(Writers, FormatEverySubtitleForItsReaders) {
  const auto srt = makeWriter("srt");
  const auto jsonl = makeWriter("jsonl");
  std::string srtOut, jsonOut;
  const auto add = [&](const Subtitle& subtitle) {
    srt->append(subtitle, srtOut);
    jsonl->append(subtitle, jsonOut);
  };
  add({3661001, 38999, "<b>A</B>\n<b>B</B>"});
  add({0, 0, "\nA\n\n \t\r\nB\n"});
  add({0xFFFFFFFF, 2, ""});
  add({59999, 1, "\"\\\x1B\x7Fż€😀\xE9t\xC0\xAF\xED\xA0\xF4\x90z\xE2\x82"});
  EXPECT_EQ(srtOut,
            "1\n01:01:01,001 --> 01:01:40,000\n<b>A</b>\n<b>B</b>\n\n"
            "2\n00:00:00,000 --> 00:00:00,000\nA\nB\n\n"
            "3\n1193:02:47,295 --> 00:00:00,001\n\n4\n00:00:59,999 --> 00:01:00,000\n"
            "\"\\\x1B\x7Fż€😀\xE9t\xC0\xAF\xED\xA0\xF4\x90z\xE2\x82\n\n");
  // Each piece of what is no character becomes one U+FFFD.
  EXPECT_EQ(jsonOut, R"({"timestamp": 3661001, "duration": 38999, "text": "<b>A</B>\n<b>B</B>"}
{"timestamp": 0, "duration": 0, "text": "\nA\n\n \t\r\nB\n"}
{"timestamp": 4294967295, "duration": 2, "text": ""}
{"timestamp": 59999, "duration": 1, "text": "\"\\\u001b)"
                     "\x7Fż€😀\uFFFDt\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFDz\uFFFD\"}\n");
}

TEST(OutputFile, IsThereWholeOrAsItWasBefore) {
  const TempFile old("old", "out");
  const fs::path folder = fs::path(old.path()).parent_path();
  fs::permissions(old.path(), fs::perms(0640));
  fs::create_symlink("out", folder / "link");
  const auto write = [](const fs::path& path, int signal = 0, bool commits = true) {
    OutputFile output(path.string());
    for (char letter : {'a', 'b', 'c'}) {
      output.buffer().append(1 << 20, letter);
      output.drain();
    }
    if (signal != 0) std::raise(signal);
    if (commits) output.commit();
  };
  write(old.path(), 0, false);
  EXPECT_EXIT(write(old.path(), SIGTERM), testing::KilledBySignal(SIGTERM), "");
  for (const fs::path& path : {folder, folder / "none" / "out", fs::path("/dev/full")}) {
    EXPECT_THROW(write(path), Failure) << path;
  }
  EXPECT_EQ(contentOf(old.path()), "old");
  write(folder / "link");
  write(folder / "new");
  EXPECT_EQ(contentOf(old.path()), contentOf(folder / "new"));
  EXPECT_EQ(fs::file_size(folder / "new"), 3U << 20);
  EXPECT_TRUE(fs::is_symlink(folder / "link"));
  EXPECT_EQ(fs::status(old.path()).permissions(), fs::perms(0640));
  EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 3) << "a temporary was left behind";
}

TEST(Session, OwnsStreamsUntilWithdrawnAndReadsWhatIsDue) {
  const TempFile movie("{1}{1}25\n{25}{50}a\n");
  Session session({.offsetMs = 1000, .plugin = OMBE_PLUGIN});
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

TEST(Program, AnswersEveryCommandWithItsExitCode) {
  const TempFile foreign("{1}{2}a\n", "caf\xE9.sub");
  const std::string acting = "\x1B]0;x\x07\xC2\x9B\u202E\u2066\u200F\u2028";
  const TempFile hostile("{1}{2}{f:" + acting + "}" + acting + "\n", acting + "\n.sub");
  const std::string names = "FOREIGN='" + foreign.path() + "' NO_PLUGIN='" OMBE_CORE "' ACTING='" +
                            acting + "' HOSTILE='" + hostile.path() + "'; ombe ";
  for (auto row : readTable("program.txt")) {
    row.resize(4);
    SCOPED_TRACE(row[0]);
    const auto [exitCode, out, err] = runShell(OMBE_SAMPLES_DIR, names + row[0]);
    EXPECT_EQ(std::to_string(exitCode), row[1]);
    EXPECT_THAT(out, HasSubstr(row[2]));
    EXPECT_THAT(err, HasSubstr(row[3]));
    EXPECT_EQ(err.empty(), row[3].empty()) << err;
    EXPECT_EQ(visibleText(err), err);
    EXPECT_TRUE(row[0].starts_with("export") || visibleText(out) == out) << "data alone is data";
  }
}

}  // namespace
}  // namespace ombe_test
