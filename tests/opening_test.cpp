// What the built plug-in makes of MicroDVD files.
#include <gmock/gmock.h>

#include <cstring>
#include <optional>

#include "ombe_core/media_source.h"
#include "support/fakes.h"

namespace ombe_test {
namespace {

using Ombe::FormatRequirement;
using Ombe::FormatRequirementList;
using Ombe::kGeneralFailure;
using Ombe::kSuccess;
using testing::ElementsAre;
using testing::IsEmpty;

struct FileCase {
  std::string content;
  std::string entries;  // as readAll gives them, or "refused"
  std::optional<std::pair<std::uint32_t, std::uint32_t>> ratio = std::nullopt;
};

std::string entriesOf(const FileCase& c) {
  Engine engine;
  if (c.ratio) engine.host.settings.setRatio(c.ratio->first, c.ratio->second);
  engine.clock.now = 2147483000;
  Ombe::StreamInterface* stream = engine.play(c.content);
  return stream == nullptr ? "refused" : readAll(*stream);
}

TEST(Opening, TurnsLinesIntoTimedEntries) {
  const std::string longText(5000, 'x');
  const FileCase cases[] = {
      {"{1}{1}25\n{25}{50}Hello", "1000+1000 Hello"},
      {"{1}{1}23.976\n{1000}{1000}a", "41708+0 a"},
      {"{1}{1}29,97\n{2997}{2997}a", "100000+0 a"},
      {"{1}{1}24000/1001\n{24}{24}a", "1001+0 a"},
      {"{1}{1}24000\\1001\n{24}{24}a", "1001+0 a"},
      {"{1}{1}25.\n{25}{25}a", "1000+0 a"},
      {"{1}{1}.5\n{1}{1}a", "2000+0 a"},
      // A header without a usable number is consumed all the same.
      {"{1}{1}.\n{24}{24}a", "1001+0 a"},
      {"{1}{1}25/\n{24}{24}a", "1001+0 a"},
      {"{1}{1}25/0\n{24}{24}a", "1001+0 a"},
      {"{1}{1}0\n{1}{1}25\n{25}{25}a", "1000+0 a"},
      {"{1}{1}25/0\n{1}{1}50\n{25}{25}a", "500+0 a"},
      // A second header, and one after a subtitle, is a subtitle.
      {"{1}{1}25\n{1}{1}50\n", "40+0 50"},
      {"{24}{24}a\n{1}{1}25\n", "41+0 25 ; 1001+0 a"},
      {"{5}{6}\n{1}{1}25\n{25}{25}a", "1000+0 a"},
      {"{1}{2}25\n", "41+42 25"},
      {"{2}{1}25\n", "83+4294967254 25"},
      // What is no header is shown, with what the attempt rewrote.
      {"{1}{1}25fps\n", "41+0 25fps"},
      {"{1}{1}12,5 fps\n", "41+0 12.5 fps"},
      {"{1}{1}24\\5,6\n", "41+0 24/5,6"},
      {"{1}{1}1.2.3\n", "41+0 1.2.3"},
      {"{1}{1}1,2,3\n", "41+0 1.2,3"},
      {"{1}{1}-25\n", "41+0 -25"},
      {"{1}{1}" + std::string(99, '1') + "\n{24}{24}a", "0+0 a"},  // overflows to a rate of -1
      {"{1}{1}" + std::string(100, '1') + "\n", "41+0 " + std::string(100, '1')},
      // The user's ratio wins over the file's, unless a part of it is 0.
      {"{1}{1}23.976\n{25}{25}a", "40+0 23.976 ; 1000+0 a", {{25, 1}}},
      {"{1}{1}50\n{25}{25}a", "500+0 a", {{25, 0}}},
      {"{1}{1}50\n{25}{25}a", "500+0 a", {{0, 1}}},
      {"{3}{6}a\n", "4294964296+4294964296 a", {{1, 4294967295}}},
      // Lines.
      {"{10}{20}A|B|\n", "417+417 A|B|"},
      {"\r\n\n{24}{48}a\r\n\r\n{48}{72}b\r", "1001+1001 a ; 2002+1001 b"},
      {"{10}{20}\n{24}{48}a\n{1}{2", "1001+1001 a"},
      {"{48}{72}b\n{24}{48}a\n", "1001+1001 a ; 2002+1001 b"},
      {"{24}{48}first\n{24}{30}second\n", "1001+1001 first ; 1001+250 second"},
      {"{48}{24}back\n", "2002+4294966295 back"},
      {"{ 24}{ +48} a \n", "1001+1001  a "},
      {"{24}{48}/One|/Two\n", "1001+1001 <i>One|/Two</i>"},
      {"{24}{48}{y:b}{x}\n", "1001+1001 <b>{x}</B>"},
      {"{24}{48}{y:}\n{72}{73}a", "1001+1001  ; 3003+41 a"},
      {"{24}{48}" + longText + "\n{72}{73}b\n", "1001+1001 " + longText + " ; 3003+41 b"},
      {std::string("{24}{48}a\n\0{bad", 15), "1001+1001 a"},
      {"{1}{1}25\n", ""},
      {"{5}{6}\n", ""},
      // One line of another form refuses the file.
      {"{24}{48}a\nb\n{72}{96}c\n", "refused"},
      {"{24}{48}a\n \t\n", "refused"},
      {" {24}{48}a\n", "refused"},
      {"{24}48}a\n", "refused"},
      {"{}{48}a\n", "refused"},
      {"", "refused"}};
  for (const FileCase& c : cases) EXPECT_EQ(entriesOf(c), c.entries) << c.content;
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

TEST(Detection, JudgesByTheFirstLineThatIsNotEmpty) {
  const std::string filler(2000, '\n');
  const std::pair<std::string, bool> cases[] = {
      {"{1}{1}23.976\n", true},
      {"\r\n\n{1}{25}Hi\r\n", true},
      {"{1}{25}Hi\n", true},
      {"{1}{25}", true},
      {"{1}{25", true},
      {"{ 1}{ -2}x", true},
      {"{-3}{7}text", true},
      {filler + "{1}{25}Hi", false},  // the head holds no line, and it decodes
      {"{1}{25}" + std::string(3000, 'x'), true},
      {"", false},
      {"\r\n", false},
      {" {1}{25}Hi", false},
      {"\t{1}{25}Hi", false},
      {"{12}text", false},
      {"12 15 text", false},
      {"{a}{b}text", false},
      {"{1}{25}\xFF\xFE", true},
      {"\xC0{1}{25}Hi", false},
      {"\xEF\xBB\xBF{1}{25}Hi", true},
      {std::string("\xFF\xFE{\0001\0}\0{\0002\0}\0", 14), true}};
  for (const auto& [content, expected] : cases) {
    Engine engine;
    FormatRequirementList missing(1);
    EXPECT_EQ(engine.probe(TempFile(content, "any.name").uri(), &missing), expected) << content;
    EXPECT_EQ(missing.size(), 1U);
  }
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
