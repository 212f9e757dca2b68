#include "host/cli/command_description.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "host/cli/options.h"

namespace Ombe {
namespace {

/// The values in "NAME:{one,two}", as an option that takes no others calls its type.
std::vector<std::string> choicesIn(const std::string& type) {
  const std::size_t open = type.find('{');
  const std::size_t close = type.find('}');
  if (open == std::string::npos || close == std::string::npos) return {};
  return CLI::detail::split(type.substr(open + 1, close - open - 1), ',');
}

OptionDescription describe(const CLI::Option& option) {
  OptionDescription result;
  for (const std::string& name : option.get_snames()) result.names.push_back("-" + name);
  for (const std::string& name : option.get_lnames()) result.names.push_back("--" + name);
  result.isPositional = result.names.empty();
  if (result.isPositional) result.names.push_back(option.get_name(true));
  const std::string type = option.get_type_name();
  if (option.get_items_expected_max() > 0) result.value = type.substr(0, type.find(':'));
  result.choices = choicesIn(type);
  result.purpose = option.get_description();
  constexpr const char* kPaths[] = {"PATH", "OUT"};
  const bool isPath =
      std::find(std::begin(kPaths), std::end(kPaths), result.value) != std::end(kPaths);
  result.takesFile = isPath || (result.isPositional && result.choices.empty());
  return result;
}

CommandDescription describe(const CLI::App& command) {
  CommandDescription result{
      command.get_name(), command.get_description(), command.get_footer(), {}};
  for (const CLI::Option* option : command.get_options()) {
    result.options.push_back(describe(*option));
  }
  return result;
}

}  // namespace

std::vector<CommandDescription> describeCommands() {
  Options unused;
  const std::unique_ptr<CLI::App> app = makeCommandLine(unused);
  std::vector<CommandDescription> result = {describe(*app)};
  for (const CLI::App* command : app->get_subcommands({})) {
    if (!command->get_group().empty()) result.push_back(describe(*command));
  }
  return result;
}

}  // namespace Ombe
