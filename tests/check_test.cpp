// Why a file will or will not play, and guesses at code pages.
#include "host/check/check.h"

#include <gmock/gmock.h>
#include <malloc.h>

#include <iterator>
#include <random>

#include "host/check/passes.h"
#include "host/io/json_output.h"
#include "host/io/output_file.h"
#include "host/text/code_page.h"
#include "host/text/likely_code_pages.h"
#include "host/text/number_text.h"
#include "support/paths.h"
#include "support/run_program.h"
#include "support/table.h"
#include "text/converter.h"

namespace ombe_test {
namespace {

using namespace Ombe;  // NOLINT(google-build-using-namespace): the subject of every test here
using testing::AnyOf;
using testing::HasSubstr;
using testing::Not;
using std::string_literals::operator""s;

CheckReport checked(const std::string& path, SessionOptions options = {}, std::size_t limit = 0) {
  options.plugin = kPlugin;
  return checkFile(path, options, limit);
}

/// "opens 3 25/1 header; 2 overlap; ..." with a "!" before errors, or the step that failed first.
std::string summary(const CheckReport& report) {
  constexpr const char* kSources[] = {"none", "user", "header", "default"};
  std::ostringstream text;
  if (report.failed) text << stepName(*report.failed);
  if (report.opens()) {
    const auto& [rate, source, line] = report.rate;
    text << "opens " << report.subtitles << " " << rate.numerator << "/" << rate.denominator << " "
         << kSources[static_cast<int>(source)];
  }
  for (const Finding& finding : report.findings.kept()) {
    text << (severityOf(finding.kind) == Severity::kError ? "; !" : "; ") << finding.line << " "
         << wordFor(finding.kind);
  }
  return text.str();
}

/// All that is said, to people and to programs.
std::string words(const CheckReport& report) {
  OutputFile output("/dev/null");  // its buffer keeps a megabyte
  JsonWriter json(output);
  writeText(report, false, output);
  writeJson(report, json);
  return output.buffer();
}

TEST(Check, FindsWhatIsWrongAndWhere) {
  for (auto& row : readNamedTable("check.txt")) {
    SessionOptions options{.offsetMs = 1000};  // of what is played, not of what is in the file
    if (!row["code page"].empty()) options.codePage = row["code page"];
    if (!row["frame rate"].empty()) options.frameRate = parseFrameRate(row["frame rate"]);
    const TempFile file(row["content"], row["name"].empty() ? "a.sub" : row["name"]);
    const CheckReport report = checked(file.path(), options);
    EXPECT_EQ(summary(report), row["found"]) << row["content"];
    EXPECT_THAT(words(report), HasSubstr(row["says"]));
  }
  EXPECT_EQ(summary(checked("/none.sub")), "read; !0 failure");
  const TempFile late(std::string(1100, '\n') + "{1}{2}a\n");
  EXPECT_EQ(summary(checked(late.path())), "probe; !0 late-start");
}

TEST(Check, BelievesThePlugInWhereTheyDisagree) {
  const Answer refusal{.failed = Step::kProbe, .isMicroDVD = true};
  Findings none;
  explainUnrecognised("{1}{2}a\n", refusal, none);
  EXPECT_TRUE(none.kept().empty()) << "a good line is not told as bad";
  Answer other{.isMicroDVD = true};
  other.times.add(41, 43);
  CheckReport report;
  report.findings.setText("{1}{2}a\n");
  checkLines(other, {}, report);
  EXPECT_EQ(summary(report), "opens 0 24000/1001 default; 0 disagreement");
}

TEST(Check, ShowsNoMoreOfAKindThanAskedFor) {
  const TempFile file("{1}{2}a\nx\ny\nz\n");
  const std::string more = ": 1 more of this kind: bad-line";
  EXPECT_EQ(summary(checked(file.path(), {}, 2)), "open; !2 bad-line; !3 bad-line");
  EXPECT_THAT(words(checked(file.path(), {}, 2)), HasSubstr(more));
  EXPECT_THAT(words(checked(file.path(), {}, 3)), Not(HasSubstr("more of this kind")));
}

TEST(Check, AgreesWithThePlugInOnEveryFile) {
  const std::string pieces[] = {"{1}{1}25\n",   "{1}{2}a\n",
                                "{9}{3}\xE9\n", "{1}{2}\n",
                                "\n",           " \n",
                                "{1}{2",        "x",
                                "\0"s,          "{\0001\0}\0{\0002\0}\0x\0\n\0"s,
                                "\xC1\xF1",     std::string(1020, '\n'),
                                "\xEF\xBB\xBF", "\xFF\xFE",
                                "\xFE\xFF",     "\xFF\xFE\0\0"s,
                                "+/v8-",        "\xFB\xEE\x28",
                                "\x0E\xFE\xFF", "\x84\x31\x95\x33",
                                "\x81|"};
  const char* pages[] = {"", "UTF8", "UTF-16LE", "UTF-7", "windows-1250", "Shift_JIS", "ibm-37"};
  const TempFile file("");
  std::minstd_rand random;  // the same in every run
  for (int i = 0; i < 1500; ++i) {
    std::string content;
    for (auto count = random() % 5; count > 0; --count) content += pieces[random() % 21];
    std::ofstream(file.path(), std::ios::binary) << content;
    SessionOptions options;
    if (const char* page = pages[random() % 7]; *page != '\0') options.codePage = page;
    if (random() % 4 == 0) options.frameRate = Ratio{25, 1};
    const CheckReport report = checked(file.path(), options);
    const std::string found = summary(report);
    EXPECT_EQ(report.opens(), !report.findings.has(Severity::kError)) << found;
    EXPECT_THAT(found,
                Not(AnyOf(HasSubstr("unexplained"), HasSubstr("disagree"), HasSubstr("failure"))))
        << testing::PrintToString(content) << " in " << options.codePage.value_or("");
  }
}

TEST(Check, CostsNoMoreThanTheSizeOfAFileDeserves) {
  const auto many = [](std::size_t bytes, const std::string& line) {
    std::string text;
    while (text.size() < bytes) text += line;
    return text;
  };
  // One finding of a kind and line, and none that looks at the rest of the line for each brace.
  const TempFile styles("{1}{2}" + many(1 << 17, "{s:1}") + many(1 << 17, "{y:"));
  const CheckReport report = checked(styles.path());
  EXPECT_EQ(summary(report), "opens 1 24000/1001 default; 1 style-code");
  EXPECT_LT(words(report).size(), 2000U);
  const auto used = [] { return ::mallinfo2().uordblks + ::mallinfo2().hblkhd; };
  for (const char* line : {"{0}{-1}a\n", "{1}{2}\n", "{1}{2}\xE9\n", "x\n"}) {
    const TempFile file("{1}{2}\n" + many(1 << 18, line));
    const std::size_t before = used();
    const CheckReport kept = checked(file.path());
    EXPECT_LE(used() - before, 2U << 20) << line;
  }
}

std::string encoded(const std::string& utf8, const std::string& codePage) {
  char16_t* units = nullptr;
  char* bytes = nullptr;
  std::size_t count = 0, size = 0;
  const auto* from = reinterpret_cast<const unsigned char*>(utf8.data());
  EXPECT_TRUE(toUtf16("UTF-8", from, static_cast<std::uint32_t>(utf8.size()), &units, &count));
  const std::unique_ptr<char16_t[]> ownsUnits(units);
  EXPECT_TRUE(fromUtf16(codePage.c_str(), units, count, &bytes, &size)) << codePage;
  const std::unique_ptr<char[]> ownsBytes(bytes);
  return {bytes, size};
}

TEST(CodePages, KeepNoShortFileFromBeingAnswered) {
  const TempFile file("");
  std::minstd_rand random;  // the same in every run
  for (const auto& row : readTable("code_pages.txt")) {
    std::istringstream all(row[1]);
    const std::vector<std::string> words(std::istream_iterator<std::string>(all), {});
    for (int i = 0; i < 23; ++i) {
      std::string text;
      for (auto count = random() % 4 + 1; count > 0; --count) {
        text += "{10}{50}" + words[random() % words.size()] + " " + words[random() % words.size()];
        text += '\n';
      }
      std::ofstream(file.path(), std::ios::binary) << encoded(text, row[0]);
      const CheckReport report = checked(file.path());
      EXPECT_TRUE(report.opens() && !report.findings.has(Severity::kError)) << row[0] << text;
      for (const std::string& page : report.likelyCodePages) EXPECT_TRUE(isKnownCodePage(page));
    }
  }
}

TEST(CodePages, AreGuessedFromALine) {
  for (const auto& row : readTable("guesses.txt")) {
    const std::string bytes = encoded("{1}{50}" + row[1] + "\n", row[0]);
    const std::vector<std::string> likely = likelyCodePages(bytes);
    ASSERT_FALSE(likely.empty()) << row[1];
    EXPECT_EQ(CodePageReader(likely[0]).read(bytes), "{1}{50}" + row[1] + "\n") << likely[0];
  }
  std::minstd_rand random;
  std::string noise(3000, '\0');
  for (char& c : noise) c = static_cast<char>(random() >> 8);
  EXPECT_THAT(likelyCodePages(noise), testing::IsEmpty());
}

TEST(CodePages, AreChosenWhereAFileLeavesAChoice) {
  const std::vector<std::pair<std::string, std::string>> rows = {
      {"", "UTF-8"},
      {"{1}{2}a\n", "UTF-8"},
      {"{1}{2}\u017Ca\n", "UTF-8"},
      {"{1}{2}\u017Ca\r\n{1}{2}\u017C\r\n{1}{2}\xBF", "UTF-8, except for 1 line"},
      {"{1}{2}\u017Ca\n{1}{2}g\xEA\x9Cl\xB9\n", "windows-1250, guessed from 1 line"},
      {"{1}{2}ja\xBF\xF1\r{1}{2}a\r{1}{2}g\xEA\x9Cl\xB9", "windows-1250, guessed from 2 lines"},
      {"{1}{2}\x8D\xB5\x80\x88\xBC\xFB", "no UTF-8, and no code page is likely"}};
  for (const auto& [bytes, description] : rows) {
    EXPECT_EQ(describe(chooseCodePage(bytes)), description) << testing::PrintToString(bytes);
  }
}

TEST(CodePages, AreGuessedForTheSamples) {
  const std::filesystem::path samples(kSamples);
  EXPECT_EQ(likelyCodePages(contentOf(samples / "windows-1250.sub")).at(0), "windows-1250");
  EXPECT_EQ(likelyCodePages(contentOf(samples / "cyrillic-windows-1251.sub")).at(0),
            "windows-1251");
  for (const std::size_t before : {0U, 1U}) {  // no end of the sample may halve a character
    std::string japanese(before, '\n');
    while (japanese.size() < 70000)
      japanese +=
          "\x93\xFA\x96\x7B\x8C\xEA\x82\xCC\x8E\x9A\x96\x8B\x82\xC5\x82\xB7\x81\x42\x82\xC6\x82\xC4"
          "\x82\xE0\x92\xB7\x82\xA2\n";
    EXPECT_EQ(likelyCodePages(japanese).at(0), "Shift_JIS");
  }
  EXPECT_EQ(CodePageReader("windows-1251").read("\xCF\xF0"), "Пр");
  EXPECT_EQ(CodePageReader("Shift_JIS").read("\x83"), std::nullopt);
}

}  // namespace
}  // namespace ombe_test
