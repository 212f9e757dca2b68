// The built `ombe` as people meet it.
#include <gmock/gmock.h>

#include "host/text/visible_text.h"
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
  const std::string names = "FOREIGN='" + foreign.path() +
                            "' MPL2='" OMBE_MPL2 "' NO_PLUGIN='" OMBE_CORE
                            "' THROWING='" OMBE_THROWING "' ACTING='" +
                            acting + "' HOSTILE='" + hostile.path() + "'; " + kCompletes + "ombe ";
  for (auto& row : readNamedTable("program.txt")) {
    const std::string& arguments = row["arguments"];
    SCOPED_TRACE(arguments);
    const auto [exitCode, out, err] = runShell(OMBE_SAMPLES_DIR, names + arguments);
    EXPECT_EQ(std::to_string(exitCode), row["exit"]);
    EXPECT_THAT(out, HasSubstr(row["output"]));
    EXPECT_THAT(err, HasSubstr(row["errors"]));
    EXPECT_EQ(err.empty(), row["errors"].empty()) << err;
    EXPECT_EQ(visibleText(err), err);
    EXPECT_TRUE(arguments.starts_with("export") || visibleText(out) == out) << "data alone is data";
  }
}

}  // namespace
}  // namespace ombe_test
