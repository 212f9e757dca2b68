// What the built plug-in makes of MicroDVD files.
#include <gmock/gmock.h>

#include <cstring>

#include "ombe_core/media_source.h"
#include "support/fakes.h"
#include "support/table.h"

namespace ombe_test {
namespace {

using Ombe::FormatRequirement;
using Ombe::FormatRequirementList;
using Ombe::kGeneralFailure;
using Ombe::kSuccess;
using testing::ElementsAre;

/// The entries of a file of this content, or "refused"; the user's ratio is numerator, denominator.
std::string entriesOf(const std::string& content, const std::vector<std::string>& ratio = {}) {
  Engine engine;
  if (!ratio.empty()) {
    engine.host.settings.setRatio(static_cast<std::uint32_t>(std::stoul(ratio.at(0))),
                                  static_cast<std::uint32_t>(std::stoul(ratio.at(1))));
  }
  engine.clock.now = 2147483000;
  Ombe::StreamInterface* stream = engine.play(content);
  return stream == nullptr ? "refused" : readAll(*stream);
}

TEST(Opening, TurnsLinesIntoTimedEntries) {
  for (const auto& row : readTable("opening.txt")) {
    EXPECT_EQ(entriesOf(row.at(0), {row.begin() + 2, row.end()}), row.at(1)) << row.at(0);
  }
  EXPECT_EQ(entriesOf(""), "refused");
  const std::string number(99, '1'), longText(5000, 'x');
  EXPECT_EQ(entriesOf("{1}{1}" + number + "\n{24}{24}a"), "0+0 a");  // overflows to a rate of -1
  EXPECT_EQ(entriesOf("{1}{1}1" + number), "41+0 1" + number);       // too long for a header
  EXPECT_EQ(entriesOf("{24}{48}" + longText + "\n{72}{73}b"),
            "1001+1001 " + longText + " ; 3003+41 b");
}

TEST(Opening, GoesByTheExtensionAlone) {
  Engine engine;
  for (const char* name : {"movie.SUB", "movie.sub.bak", "movie", "sub", "a.srt", ".sub2"}) {
    EXPECT_EQ(engine.open(TempFile("{1}{2}a", name).uri()), kGeneralFailure) << name;
  }
  for (const char* name : {"a.txt", ".sub", "two.dots.sub", "with blank%20#?.sub"}) {
    const TempFile file("{1}{2}a", name);
    EXPECT_EQ(engine.open(file.uri()), kSuccess) << name;
    EXPECT_EQ(engine.activate(), kSuccess);
    Ombe::ByteString shown;
    EXPECT_TRUE(engine.newestStream()->getStreamInfo(&shown, nullptr, nullptr));
    EXPECT_EQ(view(shown), name);
    EXPECT_EQ(view(engine.component.container->getSourcePath()), file.path());
    std::uint64_t size = 0;
    EXPECT_EQ(engine.component.container->getFileSize(&size), kSuccess);
    EXPECT_EQ(size, 7U);
  }
  const TempFile file("{1}{2}a", "a.sub");
  EXPECT_EQ(engine.open("http://host" + file.path()), kGeneralFailure);
  EXPECT_EQ(engine.open(""), kGeneralFailure);
  EXPECT_EQ(engine.open(file.path()), kSuccess);
  EXPECT_EQ(engine.open(TempFile("bad", "b.sub").uri()), kGeneralFailure);
  EXPECT_EQ(view(engine.component.container->getSourcePath()), file.path());
  engine.activate();
}

TEST(Opening, LogsEachEntry) {
  Engine engine;
  const LogCapture log;
  engine.play("{1}{1}25\n{50}{25}A|B\n{75}{100}{y:}\n");
  EXPECT_THAT(const_cast<LogCapture&>(log).take(),
              ElementsAre("Container open:422 got subtitle start: 2000 duration: -1000 'A\nB'",
                          "Container open:422 got subtitle start: 3000 duration: 1000 ''"));
}

/// Which rate is in force shows in what a change of ratio makes of an entry at 1,000 frames.
TEST(Opening, KeepsTheHeaderOfAFailedFileButNotItsRate) {
  Engine engine;
  Ombe::StreamInterface* stream = engine.play("{1}{1}20\n{1000}{1000}a");
  EXPECT_EQ(engine.play("{1}{1}40\nbad"), nullptr);
  engine.clock.now = 2000000;
  engine.controller.changeRatio(0, 0);  // 50 s at 20 become 25 s at the 40 that the file stated
  EXPECT_EQ(readAll(*stream), "25000+0 a");
}

TEST(Opening, OfAFileWithoutEntriesLeavesTheTimesOfOthersAlone) {
  Engine engine;
  Ombe::StreamInterface* stream = engine.play("{1}{1}20\n{1000}{1000}a");
  EXPECT_NE(engine.play("{1}{2}\n"), nullptr);
  engine.clock.now = 2000000;
  engine.controller.changeRatio(25, 1);
  EXPECT_EQ(readAll(*stream), "50000+0 a");
}

TEST(Detection, JudgesByTheFirstLineThatIsNotEmpty) {
  const auto isRecognised = [](const std::string& content) {
    Engine engine;
    FormatRequirementList missing(1);
    const bool is = engine.probe(TempFile(content, "any.name").uri(), &missing);
    EXPECT_EQ(missing.size(), 1U);
    return is;
  };
  for (const auto& row : readTable("detection.txt")) {
    EXPECT_EQ(isRecognised(row.at(0)), row.at(1) == "yes") << row.at(0);
  }
  EXPECT_FALSE(isRecognised(""));
  EXPECT_TRUE(isRecognised("{1}{25}" + std::string(3000, 'x')));
  EXPECT_FALSE(isRecognised(std::string(2000, '\n') + "{1}{25}Hi")) << "the head holds no line";
}

TEST(Detection, NamesTheFormatThatTheEngineLacks) {
  Engine engine;
  const TempFile file("{1}{25}Hi\n");
  FormatRequirementList missing(1, FormatRequirement{"other", {1, 2, 3}});
  engine.context.answer = false;
  EXPECT_FALSE(engine.probe(file.uri(), &missing));
  EXPECT_FALSE(engine.probe(file.uri(), nullptr));
  EXPECT_FALSE(engine.probe(file.uri(), &missing));
  ASSERT_EQ(missing.size(), 3U);
  const FormatRequirement expected{"UTF8\0\0\0", {20, 4, 0}};
  EXPECT_EQ(std::memcmp(&missing[2], &expected, 20), 0);
  EXPECT_STREQ(missing[0].name, "other");
  EXPECT_THAT(engine.context.asked, ElementsAre("UTF8", "UTF8", "UTF8"));
  EXPECT_FALSE(engine.probe("http://host/a.sub"));
  EXPECT_FALSE(engine.probe(file.uri() + "x"));
  Component withoutContext(nullptr);
  EXPECT_FALSE(withoutContext.container->probe(Ombe::MediaSource(Ombe::toByteString(file.uri())), 0,
                                               0, &missing));
}

}  // namespace
}  // namespace ombe_test
