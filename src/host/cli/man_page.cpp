#include "host/cli/man_page.h"

#include <string_view>

namespace Ombe {
namespace {

struct Entry {
  const char* name;
  const char* meaning;
};

constexpr Entry kExitCodes[] = {
    {"0", "done"},
    {"1", "a file was refused or could not be read, or the output could not be written"},
    {"2", "wrong usage"},
    {"3", "the plug-in could not be loaded"},
};

constexpr Entry kEnvironment[] = {
    {"OMBE_PLUGIN_PATH",
     "plug-ins, or folders of them, separated by colons, where they are looked for before the "
     "user's plug-in folder ~/.local/lib/ombe and the one that was installed or built with ombe"},
    {"NO_COLOR", "when not empty, output is not coloured unless --color=always asks for it"},
    {"TMPDIR", "folder for the copy of standard input and the sample of inspect; /tmp if not set"},
};

/// Backslashes, dashes and quotes as troff shows them; no line begins with a control character.
std::string escaped(std::string_view text) {
  std::string out;
  for (const char c : text) {
    if ((c == '.' || c == '\'') && (out.empty() || out.back() == '\n')) out += "\\&";
    if (c == '\\') {
      out += "\\e";
    } else if (c == '-') {
      out += "\\-";
    } else if (c == '\'') {
      out += "\\(aq";
    } else {
      out += c;
    }
  }
  return out;
}

std::string bold(std::string_view text) { return "\\fB" + escaped(text) + "\\fR"; }

void appendSection(std::string& out, std::string_view title) {
  out.append(".SH ").append(title).append("\n");
}

void appendOption(std::string& out, const OptionDescription& option) {
  std::string names;
  for (const std::string& name : option.names) {
    names.append(names.empty() ? "" : ", ");
    names += option.isPositional ? "\\fI" + escaped(name) + "\\fR" : bold(name);
  }
  if (!option.value.empty() && !option.isPositional) {
    names.append(" \\fI").append(escaped(option.value)).append("\\fR");
  }
  out.append(".TP\n").append(names).append("\n").append(escaped(option.purpose));
  if (!option.choices.empty()) {
    std::string choices;
    for (const std::string& choice : option.choices) {
      choices.append(choices.empty() ? "" : ", ").append(choice);
    }
    out.append(" (").append(escaped(choices)).append(")");
  }
  out += '\n';
}

/// One paragraph for each of its lines.
void appendFooter(std::string& out, std::string_view footer) {
  while (!footer.empty()) {
    const std::size_t end = std::min(footer.find('\n'), footer.size());
    out.append(".PP\n").append(escaped(footer.substr(0, end))).append("\n");
    footer.remove_prefix(std::min(end + 1, footer.size()));
  }
}

template <std::size_t size>
void appendEntries(std::string& out, std::string_view title, const Entry (&entries)[size]) {
  appendSection(out, title);
  for (const Entry& entry : entries) {
    out.append(".TP\n").append(bold(entry.name)).append("\n");
    out.append(escaped(entry.meaning)).append("\n");
  }
}

void appendCommand(std::string& out, const CommandDescription& command) {
  out.append(".SS ").append(command.name).append("\n").append(escaped(command.purpose));
  out += ".\n";
  for (const OptionDescription& option : command.options) appendOption(out, option);
  appendFooter(out, command.footer);
}

}  // namespace

std::string manPage(const std::string& version, const std::vector<CommandDescription>& commands) {
  const CommandDescription& program = commands.front();
  std::string out = ".TH OMBE 1 \"\" \"ombe " + version + "\" \"User Commands\"\n";
  appendSection(out, "NAME");
  out += "ombe \\- show, check and convert subtitle files\n";
  appendSection(out, "SYNOPSIS");
  out += bold("ombe") + " \\fICOMMAND\\fR [\\fIOPTION\\fR...] [\\fIFILE\\fR...]\n";
  appendSection(out, "DESCRIPTION");
  out += escaped(program.purpose) + "\n";
  appendSection(out, "OPTIONS");
  for (const OptionDescription& option : program.options) appendOption(out, option);
  appendSection(out, "COMMANDS");
  for (const CommandDescription& command : commands) {
    if (&command != &program) appendCommand(out, command);
  }
  appendEntries(out, "EXIT STATUS", kExitCodes);
  appendEntries(out, "ENVIRONMENT", kEnvironment);
  return out;
}

}  // namespace Ombe
