// The built `ombe` as people meet it.
#include <gmock/gmock.h>

#include "host/text/visible_text.h"
#include "support/paths.h"
#include "support/run_program.h"
#include "support/table.h"

namespace ombe_test {
namespace {

using Ombe::visibleText;
using testing::HasSubstr;

/// Shows what bash makes of the words behind it by the script that it reads, and whether it falls
/// back to files.
constexpr char kCompletes[] =
    "complete() { bash -c '. /dev/stdin; compopt() { echo \"$@\"; }; COMP_WORDS=(\"$@\"); "
    "COMP_CWORD=$(($# - 1)); _ombe; echo \"${COMPREPLY[@]}\"' - \"$@\"; }; ";

TEST(Program, AnswersEveryCommandWithItsExitCode) {
  const TempFile foreign("{1}{2}a\n", "caf\xE9.sub");
  const std::string acting = "\x1B]0;x\x07\xC2\x9B\u202E\u2066\u200F\u2028";
  const TempFile hostile("{1}{2}{f:" + acting + "}" + acting + "\n", acting + "\n.sub");
  const std::string names = "FOREIGN='" + foreign.path() + "' MPL2='" + kMpl2Plugin +
                            "' NO_PLUGIN='" + kCoreLibrary + "' THROWING='" + kThrowingPlugin +
                            "' ACTING='" + acting + "' HOSTILE='" + hostile.path() + "'; " +
                            kCompletes + "ombe ";
  for (auto& row : readNamedTable("program.txt")) {
    const std::string& arguments = row["arguments"];
    SCOPED_TRACE(arguments);
    const auto [exitCode, out, err] = runShell(kSamples, names + arguments);
    EXPECT_EQ(std::to_string(exitCode), row["exit"]);
    EXPECT_THAT(out, HasSubstr(row["output"]));
    EXPECT_THAT(err, HasSubstr(row["errors"]));
    EXPECT_EQ(err.empty(), row["errors"].empty()) << err;
    EXPECT_EQ(visibleText(err), err);
    EXPECT_TRUE(arguments.starts_with("export") || visibleText(out) == out) << "data alone is data";
  }
}

/// Puts a program there that answers with the text when a file is named behind all options.
void makeAnswering(const std::filesystem::path& program, const std::string& text) {
  const std::string answer = program.string() + ".txt";
  if (text == "ENDLESS") {
    std::filesystem::create_symlink("/dev/zero", answer);
  } else {
    std::ofstream(answer) << text;
  }
  std::ofstream(program) << "#!/bin/sh\nfor last; do :; done\n"
                         << "[ -f \"/${last#*/}\" ] && exec /bin/cat '" << answer << "'\n";
  std::filesystem::permissions(program, std::filesystem::perms::owner_all);
}

TEST(Program, AsksOtherProgramsForTheRateOfAFilm) {
  for (auto& row : readNamedTable("films.txt")) {
    SCOPED_TRACE(row["film"] + " " + row["ffprobe"] + row["mediainfo"] + " " + row["options"]);
    const TempFile movie("{1}{1}25\n{1000}{1100}a\n", "movie.sub");
    const auto folder = std::filesystem::path(movie.path()).parent_path();
    std::filesystem::create_directory(folder / "bin");
    for (const std::string program : {"ffprobe", "mediainfo"})
      if (!row[program].empty()) makeAnswering(folder / "bin" / program, row[program]);
    if (row["film"].ends_with(".mkv") && row["film"] != "none.mkv")
      std::ofstream(folder / row["film"]) << "film";
    ::setenv("FILM", row["film"].c_str(), 1);
    const auto [exitCode, out, err] =
        runShell(folder, "PATH=\"$PWD/bin\"; ombe export movie.sub -f jsonl --fit=\"$FILM\" " +
                             row["options"]);
    EXPECT_EQ(std::to_string(exitCode), row["exit"]);
    EXPECT_THAT(out, HasSubstr(row["start"].empty() ? "" : "{\"timestamp\": " + row["start"]));
    EXPECT_THAT(err, HasSubstr(row["errors"]));
  }
}

TEST(Program, TakesTheRateOfARealFilm) {
  const TempFile movie("{1}{1}25\n{1000}{1100}a\n", "movie.sub");
  const auto folder = std::filesystem::path(movie.path()).parent_path();
  const std::string make =
      "ffmpeg -v error -f lavfi -i testsrc=size=64x48:rate=30000/1001 -t 1 f.mkv";
  if (runShell(folder, make + " && ffprobe -version").exitCode != 0)
    GTEST_SKIP() << "without ffmpeg and ffprobe there is no film";
  const auto [exitCode, out, err] = runShell(folder, "ombe fix movie.sub --fit f.mkv");
  EXPECT_EQ(out, "{1}{1}30000/1001\n{1000}{1100}a\n") << err;
}

}  // namespace
}  // namespace ombe_test
