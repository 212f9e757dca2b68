// The built `ombe` as people meet it.
#include <gmock/gmock.h>

#include "host/text/visible_text.h"
#include "support/run_program.h"
#include "support/table.h"

namespace ombe_test {
namespace {

using Ombe::visibleText;
using testing::HasSubstr;

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
