// Why a file will or will not play.
#include <gmock/gmock.h>
#include <sys/resource.h>

#include <csignal>
#include <thread>

#include "host/check/examination.h"
#include "host/io/input_file.h"
#include "host/io/output_file.h"
#include "host/text/code_page.h"
#include "host/text/garbled_texts.h"
#include "host/text/number_text.h"
#include "support/run_program.h"
#include "support/table.h"

namespace ombe_test {
namespace {

namespace fs = std::filesystem;
using namespace Ombe;  // NOLINT(google-build-using-namespace): the subject of every test here
using testing::HasSubstr;
using std::string_literals::operator""s;

/// "opens 3 25/1 header; 2 overlap; ..." with a "!" before errors, or the step that failed first.
std::string summary(const CheckReport& report) {
  std::string text = report.step;
  if (report.opens) {
    const FrameRate& rate = report.rate.rate;
    text = "opens " + std::to_string(report.subtitles) + " " + std::to_string(rate.numerator) +
           "/" + std::to_string(rate.denominator) + " " + report.rate.source;
  }
  for (const Finding& finding : report.findings.sorted()) {
    text += finding.severity == Severity::kError ? "; !" : "; ";
    text += std::to_string(finding.line) + " " + finding.kind;
  }
  return text;
}

CheckReport examined(const std::string& path, SessionOptions options = {}, std::size_t limit = 0) {
  options.plugin = OMBE_PLUGIN;
  return examine(path, path, options, limit);
}

TEST(Check, FindsWhatIsWrongAndWhere) {
  for (auto row : readTable("check.txt")) {
    row.resize(5);
    SessionOptions options;
    options.codePage = row[2].empty() ? std::nullopt : std::optional(row[2]);
    options.frameRate = row[3].empty() ? std::nullopt : parseFrameRate(row[3]);
    const TempFile file(row[0], row[4].empty() ? "a.sub" : row[4]);
    EXPECT_EQ(summary(examined(file.path(), options)), row[1]) << row[0];
  }
  EXPECT_EQ(summary(examined("/none.sub")), "read; !0 failure");
}

TEST(Check, ShowsNoMoreOfAKindThanAskedFor) {
  const TempFile file("{1}{2}a\nx\ny\nz\n");
  const CheckReport report = examined(file.path(), {}, 2);
  EXPECT_EQ(summary(report), "open; !2 bad-line; !3 bad-line");
  EXPECT_THAT(report.findings.omitted(), testing::ElementsAre(testing::Pair("bad-line", 1U)));
}

TEST(CodePages, AreGuessedForTheSamples) {
  EXPECT_EQ(likelyCodePages(contentOf(OMBE_SAMPLES_DIR "/windows-1250.sub")).at(0), "windows-1250");
  EXPECT_EQ(likelyCodePages(contentOf(OMBE_SAMPLES_DIR "/cyrillic-windows-1251.sub")).at(0),
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

TEST(TemporaryFiles, AreGoneWhicheverSignalEndsTheirThreads) {
  const TempFile target("", "a");
  const fs::path folder = fs::path(target.path()).parent_path();
  const auto run = [&](int signal) {
    const rlimit noCore{};
    ::setrlimit(RLIMIT_CORE, &noCore);
    std::signal(signal, SIG_DFL);
    ::setenv("TMPDIR", folder.c_str(), 1);
    const InputFile copy = InputFile::holding("a");
    std::atomic<int> made{0};
    const auto makeMany = [&] {
      for (;; ++made) const OutputFile output(target.path());
    };
    for (int i = 0; i < 4; ++i) std::thread(makeMany).detach();
    while (made < 50) std::this_thread::yield();
    std::raise(signal);
    ::_exit(1);
  };
  for (int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE, SIGXCPU, SIGXFSZ}) {
    for (int i = 0; i < 5; ++i) EXPECT_EXIT(run(signal), testing::KilledBySignal(signal), "");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 1) << signal;
  }
}

}  // namespace
}  // namespace ombe_test
