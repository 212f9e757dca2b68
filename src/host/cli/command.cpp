#include "host/cli/command.h"

#include <algorithm>
#include <iterator>

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
              {.names = {kVersion}, .purpose = "Display program version information and exit"}}};
}

struct Entry {
  std::string_view name;
  const char* heading;
  Command (*make)();
};

constexpr char kForPeople[] = "For people with subtitles";
constexpr char kForAuthors[] = "For authors of plug-ins";
constexpr Entry kEntries[] = {
    {"play", kForPeople, playCommand},
    {"check", kForPeople, checkCommand},
    {"fix", kForPeople, fixCommand},
    {"export", kForPeople, exportCommand},
    {"info", kForAuthors, infoCommand},
    {"inspect", kForAuthors, inspectCommand},
    {"probe", kForAuthors, probeCommand},
    {"validate", kForAuthors, validateCommand},
    {"completion", kForAuthors, completionCommand},
    {"man", "", manCommand},
};

void addHelp(Command& command) {
  command.options.insert(
      command.options.begin(),
      {{.names = {"-h", "--help"}, .purpose = kHelpPurpose, .isShared = true},
       {.names = {"--help-all"}, .purpose = kHelpAllPurpose, .isShared = true, .isRare = true}});
}

}  // namespace

std::vector<Command> commandsFor(std::string_view word) {
  const auto* const named = std::ranges::find(kEntries, word, &Entry::name);
  std::vector<Command> commands = {program()};
  for (const Entry& entry : kEntries) {
    const bool isNeeded = named == std::end(kEntries) || named == &entry;
    if (!isNeeded) continue;
    Command& command = commands.emplace_back(entry.make());
    command.name = entry.name;
    command.heading = entry.heading;
  }
  std::ranges::for_each(commands, addHelp);
  return commands;
}

}  // namespace Ombe
