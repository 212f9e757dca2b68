#include "host/cli/command.h"

namespace Ombe {

std::vector<Command> allCommands() {
  std::vector<Command> commands = {
      {.name = "ombe",
       .purpose =
           "Checks, mends, plays and converts subtitle files with the Ombe engine's plug-ins.",
       .footer = "Example: ombe export movie.sub -o movie.srt\nMore: ombe COMMAND --help",
       .options = {{.names = {"--version"},
                    .purpose = "Display program version information and exit"}}},
      probeCommand(),
      infoCommand(),
      exportCommand(),
      playCommand(),
      checkCommand(),
      fixCommand(),
      inspectCommand(),
      validateCommand(),
      completionCommand(),
      manCommand(),
  };
  for (Command& command : commands) {
    command.options.insert(
        command.options.begin(),
        {.names = {"-h", "--help"}, .purpose = "Print this help message and exit"});
  }
  return commands;
}

}  // namespace Ombe
