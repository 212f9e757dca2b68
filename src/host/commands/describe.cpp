// Commands that describe the command line itself.
#include "host/cli/command.h"
#include "host/cli/descriptions.h"
#include "host/io/output_file.h"

namespace Ombe {
Command completionCommand() {
  const auto shell = std::make_shared<std::string>();
  return {
      .purpose = "Write the script by which a shell completes ombe",
      .footer = "Example: ombe completion bash >~/.local/share/bash-completion/completions/ombe",
      .options = {{.names = {"SHELL"},
                   .purpose = "Shell",
                   .choices = completionShells(),
                   .isRequired = true,
                   .set = into(*shell)}},
      .run = [shell] {
        writeOutput("-", completionScript(*shell, allCommands()));
        return ExitCode::kDone;
      }};
}

Command manCommand() {
  return {.purpose = "Write the manual page",
          .footer = "Example: ombe man | man -l -",
          .run =
              [] {
                writeOutput("-", manPage(OMBE_VERSION, allCommands()));
                return ExitCode::kDone;
              },
          .isHidden = true};
}

}  // namespace Ombe
