// Reading, seeking and re-timing the built plug-in's stream.
#include <gmock/gmock.h>

#include <sstream>

#include "support/fakes.h"
#include "support/table.h"

namespace ombe_test {
namespace {

using Ombe::SettingValue;
using Ombe::Status;
using testing::ElementsAre;

constexpr const char* kTwo = "{1}{1}1000\n{1000}{3000}A\n{5000}{6000}B\n";

/// One word a step: seek/next/clock/speed/offset with a number, read, all, reset. What it answers.
std::string step(Engine& engine, Ombe::StreamInterface& stream, const std::string& word) {
  const std::string name = word.substr(0, word.find('='));
  const double number = name == word ? 0 : std::stod(word.substr(word.find('=') + 1));
  std::uint32_t out = 12345;
  const auto answer = [&](Status status) {
    return status == 0 ? std::to_string(out) : status == Ombe::kGeneralFailure ? "fail" : "-1";
  };
  if (name == "read") return readOne(stream);
  if (name == "all") return readAll(stream);
  if (name == "seek") return answer(stream.seekStream(static_cast<std::uint32_t>(number), &out, 0));
  if (name == "next") {
    return answer(stream.getNextChunkTime(9, static_cast<std::uint32_t>(number), &out));
  }
  if (name == "last") return std::to_string(stream.getLastChunkTime());
  if (name == "reset") stream.resetStream();
  if (name == "clock") engine.clock.now = static_cast<std::int32_t>(number);
  if (name == "offset") engine.host.offset = number / 10;
  if (name == "speed" && !stream.setReadSpeed(static_cast<std::int32_t>(number))) return "no";
  return "";
}

std::string play(const std::string& content, const std::string& script) {
  Engine engine;
  engine.clock.now = 100000;
  Ombe::StreamInterface* stream = engine.play(content);
  std::string answers;
  std::istringstream words(script);
  for (std::string word; words >> word;) {
    const std::string answer = step(engine, *stream, word);
    if (!answer.empty()) answers += (answers.empty() ? "" : ", ") + answer;
  }
  return answers;
}

TEST(Stream, PlaysForwardBackwardAndPaused) {
  const std::map<std::string, std::string> files = {
      {"none", "{1}{1}1000\n"},
      {"two", kTwo},
      {"three", "{1}{1}1000\n{1000}{3000}A\n{2000}{2500}B\n{5000}{6000}C\n"}};
  for (const auto& row : readTable("stream.txt")) {
    const auto named = files.find(row.at(0));
    const std::string& content = named == files.end() ? row.at(0) : named->second;
    EXPECT_EQ(play(content, row.at(1)), row.at(2)) << row.at(1);
  }
}

TEST(Stream, LogsSeeksAndReads) {
  Engine engine;
  engine.clock.now = 600;
  Ombe::StreamInterface* stream = engine.play(kTwo);
  stream->setStreamNumber(3);
  engine.host.offset = 50;
  LogCapture log;
  stream->seekStream(0, nullptr, false);
  readOne(*stream);
  readOne(*stream);  // not due: no record
  stream->seekStream(7000, nullptr, true);
  stream->setReadSpeed(-1000);  // seeks forward to the current entry, here the last one's end
  stream->seekStream(1000, nullptr, true);
  stream->setReadSpeed(0);
  stream->seekStream(1000, nullptr, true);
  EXPECT_THAT(log.take(),
              ElementsAre("Container seekStream:723 Subtitle Stream: seeked to 1000",
                          "Subtitle readStream:795 PARSED(Sub=3): timestamp=1050 duration=2000 "
                          "mediatime=600",
                          "Container seekStream:725 Subtitle Stream: seeked to end",
                          "Container seekStream:723 Subtitle Stream: seeked to 5000",
                          "Container seekStream:723 Subtitle Stream: seeked to 1000",
                          "Container seekStream:723 Subtitle Stream: seeked to 1000"));
}

TEST(Stream, WithoutAClockDeliversNothing) {
  Engine engine;
  const TempFile file(kTwo);
  engine.open(file.uri());
  engine.activate();
  Ombe::StreamInterface& stream = *engine.newestStream();
  EXPECT_EQ(readOne(stream), "wait");
  stream.setTimeSource(&engine.clock);
  EXPECT_EQ(stream.setTimeSource(nullptr), -1);
  engine.clock.now = 9999;
  EXPECT_EQ(readOne(stream), "1000+2000 A");  // by the clock it had
}

TEST(Settings, RescaleAtEachChangeOfTheFrameRate) {
  for (const auto& row : readTable("rescale.txt")) {
    Engine engine;
    Ombe::StreamInterface* stream = engine.play(row.at(0));
    std::istringstream ratios(row.at(1));
    char slash = 0;
    for (std::uint32_t numerator = 0, denominator = 0;
         ratios >> numerator >> slash >> denominator;) {
      engine.controller.changeRatio(numerator, denominator);
    }
    engine.clock.now = 2147483000;
    EXPECT_EQ(readAll(*stream), row.at(2)) << row.at(0) << row.at(1);
  }
}

TEST(Settings, IgnoreWhatIsNotTheirs) {
  Engine engine;
  engine.clock.now = 9999;
  engine.host.settings.setString("CodePage", "Name", "windows-1251");
  Ombe::StreamInterface* stream = engine.play("{1}{1}1000\n{1000}{3000}\xB3\xB9\n");
  const SettingValue ratio = SettingValue::ratio({1, 1});
  const SettingValue flag = SettingValue::boolean(true);
  Ombe::String text("windows-1250");
  const SettingValue name = SettingValue::string(&text);
  const auto other = static_cast<Ombe::MediaType>(3);
  engine.controller.change("FrameRate", "Ratio", nullptr);
  engine.controller.change("FrameRate", "Ratio", &name);
  engine.controller.change("FrameRate", "Ratio", &ratio, other);
  engine.controller.change("FrameRate", "Rate", &ratio);
  engine.controller.change("framerate", "Ratio", &ratio);
  engine.controller.change("CodePage", "Name", nullptr);
  engine.controller.change("CodePage", "Name", &flag);
  engine.controller.change("CodePage", "Name", &name, other);
  engine.controller.change("CodePage", "Autodetected", &flag);
  EXPECT_EQ(readOne(*stream), "1000+2000 \u0456\u2116");
}

TEST(Settings, ChangeTheCodePageOfEntriesDeliveredFromThenOn) {
  Engine engine;
  engine.clock.now = 9999;
  engine.host.settings.setString("CodePage", "Name", "windows-1250");
  Ombe::StreamInterface* stream = engine.play("{1}{2}\xB3\xB9\n{3}{4}\xB3\xB9\n{5}{6}\xB3\xB9\n");
  EXPECT_EQ(readOne(*stream), "41+42 \u0142\u0105");
  engine.controller.changeCodePage("windows-1251");
  engine.host.settings.setString("CodePage", "Autodetected", "no flag");
  EXPECT_EQ(readOne(*stream), "125+41 \u0456\u2116");
  const SettingValue null = SettingValue::string(nullptr);
  engine.controller.change("CodePage", "Name", &null);
  EXPECT_EQ(readOne(*stream), "208+42 \xB3\xB9");
  engine.controller.changeCodePage("no such code page");
  stream->resetStream();
  EXPECT_EQ(readOne(*stream), "41+42 \xB3\xB9");
}

}  // namespace
}  // namespace ombe_test
