// Commands that describe the command line itself.
#include "host/cli/command_description.h"
#include "host/cli/completion.h"
#include "host/cli/man_page.h"
#include "host/cli/options.h"
#include "host/commands/commands.h"
#include "host/io/output_file.h"

namespace Ombe {
namespace {

ExitCode write(const std::string& text) {
  OutputFile output("-");
  output.buffer() = text;
  output.commit();
  return ExitCode::kDone;
}

}  // namespace

ExitCode runCompletion(const Options& options) {
  return write(completionScript(options.shell, describeCommands()));
}

ExitCode runMan(const Options& /*options*/) {
  return write(manPage(OMBE_VERSION, describeCommands()));
}

}  // namespace Ombe
