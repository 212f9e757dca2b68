#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <string_view>

#include "host/cli/command.h"
#include "host/io/messages.h"
#include "host/io/output_file.h"

namespace Ombe {
namespace {

constexpr char kVersionText[] = "ombe " OMBE_VERSION;
constexpr char kShared[] = "Options of all commands that meet a source";

void store(const Option& option, const std::vector<std::string>& values) {
  const std::string& name = option.names.back();
  for (const std::string& value : values) {
    if (option.set(value)) continue;
    if (option.refusal.empty()) throw CLI::ConversionError(name, values);
    throw CLI::ValidationError(name, fmt::format("'{}' {}", value, option.refusal));
  }
}

CLI::Option& add(CLI::App& app, const Option& option) {
  const std::string names = fmt::format("{}", fmt::join(option.names, ","));
  if (option.isFlag()) {
    return *app.add_flag_callback(
        names, [set = option.set] { set({}); }, option.purpose);
  }
  CLI::Option& added = *app.add_option_function<std::vector<std::string>>(
      names, [&option](const std::vector<std::string>& values) { store(option, values); },
      option.purpose);
  added.type_name(option.value)->required(option.isRequired)->default_str(option.initial);
  if (!option.isRepeated) added.expected(1);
  if (!option.isRepeated || !option.isPositional()) added.allow_extra_args(false);
  if (!option.choices.empty()) added.check(CLI::IsMember(option.choices));
  if (option.range) added.check(CLI::Range(option.range->first, option.range->second));
  return added;
}

void add(CLI::App& app, const Command& command, bool showsRare) {
  app.footer(command.footer);
  for (const Option& option : command.options) {
    if (!option.set) continue;
    CLI::Option& added = add(app, option);
    if (option.isShared) added.group(kShared);
    if (option.isRare && !showsRare) added.group("");
  }
}

/// The help on every command, which tells once what they share.
std::string helpOnAll(const CLI::App& app, const std::vector<Command>& commands) {
  std::string text = app.help();
  CLI::App shared;
  for (const Command& command : commands) {
    if (command.heading.empty()) continue;
    CLI::App own(command.purpose, "ombe " + command.name);
    own.set_help_flag();
    own.footer(command.footer);
    for (const Option& option : command.options) {
      if (!option.set) continue;
      const bool isTold = option.isShared && shared.get_option_no_throw(option.names.back());
      if (!isTold) add(option.isShared ? shared : own, option);
    }
    text.append("\n").append(own.help());
  }
  shared.set_help_flag();
  const CLI::App& told = shared;
  return text + CLI::Formatter().make_group(kShared, false, told.get_options());
}

/// The parser leaves an empty line for a group of options that it does not show.
std::string withoutGaps(std::string text) {
  for (std::size_t at = 0; (at = text.find("\n\n\n", at)) != std::string::npos;) text.erase(at, 1);
  return text;
}

/// Help and version, or what is wrong with the command line.
ExitCode explain(const CLI::App& app, const CLI::ParseError& end,
                 const std::vector<Command>& commands) {
  const bool isOfCommand = !app.get_subcommands().empty();
  if (end.get_exit_code() == 0) {
    std::ostringstream text;
    if (end.get_name() == "CallForAllHelp" && !isOfCommand) {
      text << helpOnAll(app, commands);
    } else {
      app.exit(end, text, text);
    }
    writeOutput("-", withoutGaps(std::move(text).str()));
    return ExitCode::kDone;
  }
  std::string message = end.what();
  const std::vector<std::string> unknown = app.remaining();
  if (!isOfCommand && !unknown.empty()) {
    message = (unknown.front().starts_with('-') ? "unknown option: " : "unknown command: ") +
              unknown.front();
  }
  reportError(message, "Run with --help for more information.");
  return ExitCode::kWrongUsage;
}

}  // namespace

ExitCode runCommandLine(int argc, char** argv) {
  const std::string_view first = argc > 1 ? argv[1] : "";
  if (argc == 2 && first == kVersion) {  // scripts ask it before all else: it needs no parser
    writeOutput("-", std::string(kVersionText) + "\n");
    return ExitCode::kDone;
  }
  const std::vector<Command> commands = commandsFor(first);
  const Command& program = commands.front();
  CLI::App app(program.purpose, program.name);
  app.set_help_flag("-h,--help", kHelpPurpose);
  app.set_help_all_flag("--help-all", kHelpAllPurpose);
  app.set_version_flag(kVersion, kVersionText);
  app.require_subcommand(1);
  const auto isTyped = [&](const std::string& word) {
    return std::find(argv, argv + argc, word) != argv + argc;
  };
  add(app, program, true);
  for (auto command = commands.begin() + 1; command != commands.end(); ++command) {
    CLI::App& parser = *app.add_subcommand(command->name, command->purpose);
    parser.group(command->heading);
    // Describing all options of all commands would cost as much as a small file does.
    if (isTyped(command->name)) add(parser, *command, isTyped("--help-all"));
  }
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& end) {
    return explain(app, end, commands);
  }
  const std::string named = app.get_subcommands().front()->get_name();
  return std::ranges::find(commands, named, &Command::name)->run();
}

}  // namespace Ombe
