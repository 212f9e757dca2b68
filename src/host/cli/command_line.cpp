#include "host/cli/command_line.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>

#include "host/io/messages.h"
#include "host/io/output_file.h"

namespace Ombe {
namespace {

void store(const Option& option, const std::vector<std::string>& values) {
  const std::string& name = option.names.back();
  for (const std::string& value : values) {
    if (option.set(value)) continue;
    if (option.refusal.empty()) throw CLI::ConversionError(name, values);
    throw CLI::ValidationError(name, fmt::format("'{}' {}", value, option.refusal));
  }
}

void add(CLI::App& app, const Option& option) {
  const std::string names = fmt::format("{}", fmt::join(option.names, ","));
  if (option.isFlag()) {
    app.add_flag_callback(
        names, [set = option.set] { set({}); }, option.purpose);
    return;
  }
  CLI::Option& added = *app.add_option_function<std::vector<std::string>>(
      names, [&option](const std::vector<std::string>& values) { store(option, values); },
      option.purpose);
  added.type_name(option.value)->required(option.isRequired)->default_str(option.initial);
  if (!option.isRepeated) added.expected(1);
  if (!option.isRepeated || !option.isPositional()) added.allow_extra_args(false);
  if (!option.choices.empty()) added.check(CLI::IsMember(option.choices));
  if (option.range) added.check(CLI::Range(option.range->first, option.range->second));
}

void add(CLI::App& app, const Command& command) {
  app.footer(command.footer);
  for (const Option& option : command.options) {
    if (option.set) add(app, option);
  }
}

/// Help and version, or what is wrong with the command line.
ExitCode explain(const CLI::App& app, const CLI::ParseError& end) {
  if (end.get_exit_code() == 0) {
    std::ostringstream text;
    app.exit(end, text, text);
    writeOutput("-", std::move(text).str());
    return ExitCode::kDone;
  }
  std::string message = end.what();
  const std::vector<std::string> unknown = app.remaining();
  if (app.get_subcommands().empty() && !unknown.empty() && !unknown.front().starts_with('-')) {
    message = "unknown command: " + unknown.front();
  }
  reportError(message, "Run with --help for more information.");
  return ExitCode::kWrongUsage;
}

}  // namespace

ExitCode runCommandLine(int argc, char** argv, const std::vector<Command>& commands) {
  const Command& program = commands.front();
  CLI::App app(program.purpose, program.name);
  app.set_version_flag("--version", "ombe " OMBE_VERSION);
  app.require_subcommand(1);
  add(app, program);
  for (auto command = commands.begin() + 1; command != commands.end(); ++command) {
    CLI::App& parser = *app.add_subcommand(command->name, command->purpose);
    if (command->isHidden) parser.group("");
    // Describing all options of all commands would cost as much as a small file does.
    if (std::find(argv, argv + argc, command->name) != argv + argc) add(parser, *command);
  }
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& end) {
    return explain(app, end);
  }
  const std::string named = app.get_subcommands().front()->get_name();
  return std::find_if(commands.begin(), commands.end(),
                      [&](const Command& command) { return command.name == named; })
      ->run();
}

}  // namespace Ombe
