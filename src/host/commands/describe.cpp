// Commands that describe the command line itself.
#include "host/cli/command.h"
#include "host/cli/completion.h"
#include "host/cli/man_page.h"
#include "host/io/output_file.h"

namespace Ombe {
namespace {

ExitCode write(std::string text) {
  OutputFile output("-");
  output.buffer() = std::move(text);
  output.commit();
  return ExitCode::kDone;
}

}  // namespace

Command completionCommand() {
  const auto shell = std::make_shared<std::string>();
  return {
      .name = "completion",
      .purpose = "Write the script by which a shell completes ombe",
      .footer = "Example: ombe completion bash >~/.local/share/bash-completion/completions/ombe",
      .options = {{.names = {"SHELL"},
                   .purpose = "Shell",
                   .choices = completionShells(),
                   .isRequired = true,
                   .set = into(*shell)}},
      .run = [shell] { return write(completionScript(*shell, allCommands())); }};
}

Command manCommand() {
  return {.name = "man",
          .purpose = "Write the manual page",
          .footer = "Example: ombe man | man -l -",
          .run = [] { return write(manPage(OMBE_VERSION, allCommands())); },
          .isHidden = true};
}

}  // namespace Ombe
