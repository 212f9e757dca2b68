// Files mended so that the plug-in opens them.
#include <gmock/gmock.h>

#include <fstream>
#include <random>

#include "host/check/check.h"
#include "host/fix/fix_file.h"
#include "host/io/failure.h"
#include "support/fakes.h"
#include "support/paths.h"
#include "support/run_program.h"
#include "support/table.h"

namespace ombe_test {
namespace {

using namespace Ombe;  // NOLINT(google-build-using-namespace): the subject of every test here
using Chunks = std::vector<std::tuple<std::uint32_t, std::uint32_t, std::string>>;
using std::string_literals::operator""s;

SessionOptions sessionOptions(const std::string& codePage = "") {
  SessionOptions options;
  options.plugin = kPlugin;
  if (!codePage.empty()) options.codePage = codePage;
  return options;
}

/// "text|changes by line", or why not.
std::string summary(const std::string& path, const std::string& codePage, bool thorough,
                    const std::string& sync) {
  FilmTimes times;
  std::istringstream points(sync);
  for (std::string point; points >> point;) times.points.push_back(*parseSyncPoint(point));
  try {
    const FixedText fixed = fixFile(path, {sessionOptions(codePage), thorough, times});
    std::string text = fixed.repair.text + "=";
    for (const LineChange& change : fixed.repair.changes) {
      text += " " + std::to_string(change.line) + " " + fateName(change.fate) + ": " + change.what;
      text += ";";
    }
    return text;
  } catch (const Failure& failure) {
    return failure.reason();
  }
}

TEST(Fix, MendsWhatPeopleAndProgramsGetWrong) {
  for (auto row : readTable("fix.txt")) {
    row.resize(5);
    const TempFile file(row[0]);
    EXPECT_EQ(summary(file.path(), row[2], row[3] == "thorough", row[4]), row[1]) << row[0];
  }
}

TEST(Fix, LosesNoFileToItsOwnOutput) {
  const std::string broken = "{1 2}a\n";
  const TempFile file(broken, "a.sub");
  const auto folder = std::filesystem::path(file.path()).parent_path();
  const auto fix = [&](const std::string& arguments) {
    return runShell(folder, "ombe fix --plugin '"s + kPlugin + "' " + arguments).exitCode;
  };
  std::filesystem::create_hard_link(file.path(), folder / "b.sub");
  for (const char* output : {"a.sub", "./a.sub", "b.sub"}) {
    EXPECT_EQ(fix("a.sub -o "s + output), 1) << output;
  }
  EXPECT_EQ(fix("a.sub -o out.txt"), 2);
  EXPECT_EQ(fix("a.sub b.sub -o out/ && cat out/a.sub out/b.sub a.sub"), 0);
  EXPECT_EQ(contentOf(folder / "a.sub"), broken);
  for (int i = 0; i < 2; ++i) {  // the second time there is nothing to do
    EXPECT_EQ(fix("a.sub --in-place"), 0);
    EXPECT_EQ(contentOf(folder / "a.sub"), "{1}{2}a\n");
    EXPECT_EQ(contentOf(folder / "a.sub.orig"), broken);
  }
  std::ofstream(file.path()) << "{3 4}b\n";
  EXPECT_EQ(fix("a.sub --in-place"), 1) << "the first original would be lost";
  EXPECT_EQ(contentOf(folder / "a.sub"), "{3 4}b\n");
  EXPECT_EQ(fix("a.sub --frame-rate 23.976 -o c.sub"), 0);
  EXPECT_EQ(contentOf(folder / "c.sub"), "{1}{1}23.976\n{3}{4}b\n");
  EXPECT_EQ(fix("c.sub --frame-rate 24000/1001 -o d.sub"), 0);
  EXPECT_EQ(contentOf(folder / "d.sub"), "{1}{1}24000/1001\n{3}{4}b\n");
}

/// What the plug-in delivers of the file; nothing when it does not open.
std::optional<Chunks> played(const std::string& path, const std::string& codePage) {
  Chunks chunks;
  Session session(sessionOptions(codePage));
  try {
    session.open(path);
  } catch (const Failure&) {
    return std::nullopt;
  }
  session.readToEnd([&chunks](const Chunk& chunk) {
    chunks.emplace_back(chunk.timestamp(), chunk.duration(), chunk.text());
  });
  return chunks;
}

TEST(Fix, MovesFramesToWithinHalfAFrameOfBothPoints) {
  std::mt19937 random(1);
  for (int run = 0; run < 200; ++run) {
    const auto first = random() % 100000, last = first + 1000 + random() % 100000;
    const TempFile file((run % 2 == 0 ? "{1}{1}25\n{" : "{") + std::to_string(first) +
                        "}{999999}a\n{" + std::to_string(last) + "}{999999}b\n");
    const Chunks before = *played(file.path(), "");
    const auto from = [&](std::size_t i) { return double{std::get<0>(before[i]) * 1.0}; };
    FilmTimes times{{{from(0), static_cast<double>(5000000 + random() % 5000000)}}};
    const double stretch = static_cast<double>(80 + random() % 40) / 100;
    const double end = times.points[0].to + std::round((from(1) - from(0)) * stretch);
    if (run % 3 != 0) times.points.push_back({from(1), end});
    const FixedText fixed = fixFile(file.path(), {sessionOptions(), false, times});
    const TempFile moved(fixed.repair.text);
    const double half = 500 / fixed.retiming->rate.perSecond() + 2;
    for (std::size_t i = 0; i < times.points.size(); ++i)
      EXPECT_NEAR(std::get<0>((*played(moved.path(), ""))[i]), times.points[i].to, half) << run;
  }
}

/// Files that were well once, with the faults that they may have.
class BrokenFiles {
 public:
  explicit BrokenFiles(unsigned seed) : random_(seed) {}

  struct File {
    std::string bytes;
    std::string codePage;
    std::vector<std::string> words;  ///< one of each text, for a file of which no byte was changed
  };

  File next() {
    File file;
    std::string text;
    const bool isWell = below(3) == 0;
    if (below(3) == 0) text = "{1}{1}"s + pick({"25", "23.976", "24000/1001", "25/0"}) + "\n";
    const std::string end = pick({"\n", "\r\n", "\r", "\r\r\n", "\n\n"});
    for (int lines = below(8); lines >= 0; --lines) {
      const std::string word = "w" + std::to_string(below(1000000));
      const std::string made =
          line(isWell ? 5 : 30, pick({"", "{y:i}", "/", "{c:$0000FF}"}) + word + "\xC3\xA9");
      if (made.find(word) != std::string::npos) file.words.push_back(word);
      text += made;
      text += lines == 0 && below(2) == 0 ? "" : end;
    }
    encode(file, text);
    if (below(4) == 0) change(file);
    return file;
  }

 private:
  int below(int bound) { return static_cast<int>(random_() % static_cast<unsigned>(bound)); }
  std::string pick(std::vector<std::string> choices) {
    return choices[static_cast<std::size_t>(below(static_cast<int>(choices.size())))];
  }

  /// One of the first `kinds` forms, in which < and > are numbers and * is the text.
  std::string line(int kinds, const std::string& text) {
    static const std::string kForms[] = {"{<}{>}*",     "{<}{>}*|*",
                                         "{ <}{+>}*",   "{<}{>}",
                                         "{>}{<}*",     "{<{>}*",
                                         "{<}>}*",      "<}{>}*",
                                         "{<}{> *",     "{{<}}{{>}}*",
                                         " {<} {>}*",   "{< }{ > }*",
                                         "[<][>]*",     "{<}{}*",
                                         "{<}*",        "{<}\n{>}*",
                                         "{<}{>}\n*",   "*",
                                         " \t",         "{DEFAULT}{}*",
                                         "\x1A",        "{<}{>}*\0"s,
                                         "{< >}*",      "{<}{>}\x01*",
                                         "{<}{>}*\x1A", "\xEF\xBB\xBF{<}{>}*",
                                         "{<}{\n>}*",   "{<}, {>}*",
                                         "{<}{>}*\n*",  "*\n{<}{>}"};
    const int first = below(2000);
    std::string result;
    for (const char c : kForms[static_cast<std::size_t>(below(kinds))]) {
      if (c == '<' || c == '>') {
        result += std::to_string(c == '<' ? first : first + 50);
      } else {
        result += c == '*' ? text : std::string(1, c);
      }
    }
    return result;
  }

  void encode(File& file, const std::string& text) {
    const int kind = below(6);
    file.bytes = kind == 0 ? "\xEF\xBB\xBF" + text : text;
    if (kind == 1) {  // the one character beyond ASCII, in its own place
      file.codePage = "windows-1250";
      for (std::size_t at = 0; (at = file.bytes.find("\xC3\xA9")) != std::string::npos;) {
        file.bytes.replace(at, 2, "\xE9");
      }
    } else if (kind == 2 && text.find('\0') == std::string::npos) {
      file.bytes = below(2) == 0 ? "" : "\xFF\xFE";
      for (std::size_t at = 0; at < text.size(); ++at) {
        const bool isTwo = text.compare(at, 2, "\xC3\xA9") == 0;
        file.bytes += isTwo ? '\xE9' : text[at];
        file.bytes += '\0';
        at += isTwo ? 1 : 0;
      }
    }
  }

  void change(File& file) {
    for (int count = below(3); count >= 0 && !file.bytes.empty(); --count) {
      const auto at = static_cast<std::size_t>(below(static_cast<int>(file.bytes.size())));
      file.bytes.replace(at, static_cast<std::size_t>(below(3)),
                         pick({"{", "}", "", "1", "\n", " "}));
    }
    file.words.clear();
  }

  std::mt19937 random_;
};

class FixProperties : public testing::Test {
 protected:
  void expectGood(const BrokenFiles::File& file) {
    write(file.bytes);
    const auto before = played(file_.path(), file.codePage);
    FixedText fixed;
    try {
      fixed = fixFile(file_.path(), {sessionOptions(file.codePage), false});
    } catch (const Failure& failure) {
      ASSERT_TRUE(!before || failure.step() == Step::kConvert) << failure.reason();
      return;
    }
    ++fixedCount_;
    expectWords(file.words, fixed.repair);
    write(fixed.repair.text);
    const auto after = played(file_.path(), "");
    ASSERT_TRUE(after) << fixed.repair.text;
    EXPECT_EQ(before.value_or(*after), *after) << fixed.repair.text;
    const CheckReport report = checkFile(file_.path(), sessionOptions(), 0);
    EXPECT_FALSE(report.findings.has(Severity::kError));
    EXPECT_TRUE(fixFile(file_.path(), {sessionOptions(), false}).isAsItWas) << fixed.repair.text;
  }

  /// In the result, or named as dropped.
  static void expectWords(const std::vector<std::string>& words, const Repair& repair) {
    std::string kept = repair.text;
    for (const LineChange& change : repair.changes) {
      if (change.fate == Fate::kDropped) kept += change.text;
    }
    for (const std::string& word : words) {
      EXPECT_NE(kept.find(word), std::string::npos) << word;
    }
  }

  void write(const std::string& bytes) { std::ofstream(file_.path(), std::ios::binary) << bytes; }

  TempFile file_{""};
  int fixedCount_ = 0;
};

TEST_F(FixProperties, HoldForBrokenFiles) {
  const char* asked = std::getenv("OMBE_FIX_RUNS");
  const int runs = asked == nullptr ? 800 : std::atoi(asked);
  for (int seed = 0; seed < runs && !HasFailure(); ++seed) {
    SCOPED_TRACE(seed);
    const BrokenFiles::File file = BrokenFiles(static_cast<unsigned>(seed)).next();
    SCOPED_TRACE(testing::PrintToString(file.bytes));
    expectGood(file);
  }
  EXPECT_GT(fixedCount_, runs / 2);
}

}  // namespace
}  // namespace ombe_test
