#include "host/cli/command.h"

namespace Ombe {

namespace {

Command program() {
  return {.name = "ombe",
          .purpose =
              "Checks, mends, plays and converts subtitle files with the Ombe engine's plug-ins.",
          .footer =
              "Example: ombe export movie.sub -o movie.srt\nMore: ombe COMMAND --help, and "
              "--help-all for all options",
          .options = {
              {.names = {"--version"}, .purpose = "Display program version information and exit"}}};
}

void add(const std::string& heading, std::vector<Command> added, std::vector<Command>& all) {
  for (Command& command : added) {
    command.heading = heading;
    all.push_back(std::move(command));
  }
}

}  // namespace

std::vector<Command> allCommands() {
  std::vector<Command> commands = {program()};
  add("For people with subtitles", {playCommand(), checkCommand(), fixCommand(), exportCommand()},
      commands);
  add("For authors of plug-ins",
      {infoCommand(), inspectCommand(), probeCommand(), validateCommand(), completionCommand()},
      commands);
  add("", {manCommand()}, commands);
  for (Command& command : commands) {
    command.options.insert(
        command.options.begin(),
        {{.names = {"-h", "--help"}, .purpose = kHelpPurpose, .isShared = true},
         {.names = {"--help-all"}, .purpose = kHelpAllPurpose, .isShared = true, .isRare = true}});
  }
  return commands;
}

}  // namespace Ombe
