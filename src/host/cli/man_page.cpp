#include <fmt/format.h>

#include <algorithm>
#include <string_view>

#include "host/cli/descriptions.h"
#include "host/text/visible_text.h"

namespace Ombe {
namespace {

const std::vector<Meaning> kExitCodes = {
    {"0", "done"},
    {"1",
     "a file was refused or could not be read, an output could not be written, fix dropped lines, "
     "check --strict found something to warn of, or a plug-in failed a check of validate"},
    {"2", "wrong usage"},
    {"3", "the plug-in could not be loaded"},
};

const std::vector<Meaning> kEnvironment = {
    {"OMBE_PLUGIN_PATH",
     "plug-ins, or folders of them, separated by colons, where they are looked for before the "
     "user's plug-in folder ~/.local/lib/ombe and the one that was installed or built with ombe"},
    {"NO_COLOR", "when not empty, output is not coloured unless --color=always asks for it"},
    {"TMPDIR",
     "folder for the copy of standard input, the sample of inspect and what validate writes; /tmp "
     "if not set"},
};

/// A line with backslashes, dashes and quotes as troff shows them. It begins with no control
/// character.
std::string inTroff(std::string_view text) {
  const bool mayControl = text.starts_with('.') || text.starts_with('\'');
  return (mayControl ? "\\&" : "") + escaped(text, {{'\\', "\\e"}, {'-', "\\-"}, {'\'', "\\(aq"}});
}

std::string bold(std::string_view text) { return "\\fB" + inTroff(text) + "\\fR"; }

void appendSection(std::string& out, std::string_view title) {
  out.append(".SH ").append(title).append("\n");
}

void appendOption(std::string& out, const Option& option) {
  std::vector<std::string> names;
  for (const std::string& name : option.names) {
    names.push_back(option.isPositional() ? "\\fI" + inTroff(name) + "\\fR" : bold(name));
  }
  out += fmt::format(".TP\n{}", fmt::join(names, ", "));
  if (!option.value.empty()) out += " \\fI" + inTroff(option.value) + "\\fR";
  std::string text = option.purpose;
  if (!option.choices.empty()) text += fmt::format(" ({})", fmt::join(option.choices, ", "));
  if (option.range) text += fmt::format(" ({} to {})", option.range->first, option.range->second);
  if (!option.initial.empty()) text += "; by default " + option.initial;
  if (!option.more.empty()) text += ". " + option.more;
  out += "\n" + inTroff(text) + "\n";
}

/// One paragraph for each of its lines.
void appendFooter(std::string& out, std::string_view footer) {
  while (!footer.empty()) {
    const std::size_t end = std::min(footer.find('\n'), footer.size());
    out.append(".PP\n").append(inTroff(footer.substr(0, end))).append("\n");
    footer.remove_prefix(std::min(end + 1, footer.size()));
  }
}

void appendMeanings(std::string& out, const std::vector<Meaning>& meanings) {
  for (const auto& [name, meaning] : meanings) {
    out.append(".TP\n").append(bold(name)).append("\n").append(inTroff(meaning)).append("\n");
  }
}

void appendCommand(std::string& out, const Command& command) {
  out.append(".SS ").append(command.name).append("\n").append(inTroff(command.purpose));
  out += ".\n";
  std::vector<std::string> shared;
  for (const Option& option : command.options) {
    if (!option.isShared) appendOption(out, option);
    if (option.isShared && option.set) shared.push_back(bold(option.names.back()));
  }
  if (!shared.empty()) out += fmt::format(".PP\nShared options: {}\n", fmt::join(shared, ", "));
  if (!command.keys.empty()) out += ".PP\nKeys:\n";
  appendMeanings(out, command.keys);
  appendFooter(out, command.footer);
}

/// Every option that commands share, once.
void appendShared(std::string& out, const std::vector<Command>& commands) {
  std::vector<std::string> told;
  for (const Command& command : commands) {
    for (const Option& option : command.options) {
      const std::string& name = option.names.back();
      if (!option.isShared || !option.set) continue;
      if (std::find(told.begin(), told.end(), name) != told.end()) continue;
      told.push_back(name);
      appendOption(out, option);
    }
  }
}

}  // namespace

std::string manPage(const std::string& version, const std::vector<Command>& commands) {
  const Command& program = commands.front();
  std::string out = ".TH OMBE 1 \"\" \"ombe " + version + "\" \"User Commands\"\n";
  appendSection(out, "NAME");
  out += "ombe \\- check, mend, play and convert subtitle files\n";
  appendSection(out, "SYNOPSIS");
  out += bold("ombe") + " \\fICOMMAND\\fR [\\fIOPTION\\fR...] [\\fIFILE\\fR...]\n";
  appendSection(out, "DESCRIPTION");
  out += inTroff(program.purpose) + "\n";
  appendSection(out, "OPTIONS");
  for (const Option& option : program.options) appendOption(out, option);
  appendSection(out, "COMMANDS");
  for (const Command& command : commands) {
    if (command.run && !command.isHidden) appendCommand(out, command);
  }
  appendSection(out, "SHARED OPTIONS");
  appendShared(out, commands);
  appendSection(out, "EXIT STATUS");
  appendMeanings(out, kExitCodes);
  appendSection(out, "ENVIRONMENT");
  appendMeanings(out, kEnvironment);
  return out;
}

}  // namespace Ombe
