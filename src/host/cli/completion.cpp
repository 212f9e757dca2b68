#include "host/cli/completion.h"

#include <fmt/format.h>

namespace Ombe {
namespace {

using Commands = std::vector<CommandDescription>;

std::string join(const std::vector<std::string>& words, std::string_view separator) {
  return fmt::format("{}", fmt::join(words, separator));
}

/// In single quotes, as all three shells read them; `escaped` are further bytes to put a backslash
/// before.
std::string quoted(std::string_view text, std::string_view escaped = {}) {
  std::string result = "'";
  for (const char c : text) {
    if (escaped.find(c) != std::string_view::npos) result += '\\';
    if (c == '\'') {
      result += "'\\''";
    } else {
      result += c;
    }
  }
  return result + "'";
}

std::string wordsOf(const CommandDescription& command) {
  std::vector<std::string> words;
  for (const OptionDescription& option : command.options) {
    const std::vector<std::string>& more = option.isPositional ? option.choices : option.names;
    words.insert(words.end(), more.begin(), more.end());
  }
  return join(words, " ");
}

std::string commandNames(const Commands& commands) {
  std::vector<std::string> names;
  for (const CommandDescription& command : commands) names.push_back(command.name);
  names.erase(names.begin());  // the program
  return join(names, " ");
}

/// Options that take one of few values, or one that nothing can be said of.
std::string bashValues(const CommandDescription& command) {
  std::string cases;
  for (const OptionDescription& option : command.options) {
    if (option.isPositional || option.value.empty() || option.takesFile) continue;
    cases += fmt::format("        {}) COMPREPLY=($(compgen -W '{}' -- \"$word\")); return ;;\n",
                         join(option.names, "|"), join(option.choices, " "));
  }
  return cases.empty() ? cases : "      case $previous in\n" + cases + "      esac\n";
}

std::string bash(const Commands& commands) {
  std::string out =
      "# bash completion for ombe: source it, or keep it in a folder of bash-completion.\n"
      "_ombe() {\n"
      "  local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]} words=\n"
      "  COMPREPLY=()\n"
      "  if [ \"$COMP_CWORD\" -eq 1 ]; then\n";
  out += fmt::format("    COMPREPLY=($(compgen -W '{} {}' -- \"$word\"))\n    return\n  fi\n",
                     commandNames(commands), wordsOf(commands.front()));
  out += "  case ${COMP_WORDS[1]} in\n";
  for (std::size_t i = 1; i < commands.size(); ++i) {
    out += fmt::format("    {})\n{}      words='{}' ;;\n", commands[i].name,
                       bashValues(commands[i]), wordsOf(commands[i]));
  }
  return out +
         "  esac\n"
         "  COMPREPLY=($(compgen -W \"$words\" -- \"$word\"))\n"
         "  [ \"${word:0:1}\" = - ] || compopt -o default\n"
         "}\n"
         "complete -F _ombe ombe\n";
}

/// One argument of zsh's _arguments.
std::string zshArgument(const OptionDescription& option) {
  constexpr std::string_view kEscaped = "[]:\\";
  std::string action = option.choices.empty() ? (option.takesFile ? "_files" : " ")
                                              : "(" + join(option.choices, " ") + ")";
  if (option.isPositional) return quoted("*:" + option.names[0] + ":" + action);
  std::string result;
  for (const std::string& name : option.names) {
    if (!result.empty()) result += " ";
    std::string purpose = quoted(option.purpose, kEscaped);
    purpose = purpose.substr(1, purpose.size() - 2);
    result.append("'").append(name).append("[").append(purpose).append("]");
    if (!option.value.empty()) result.append(":").append(option.value).append(":").append(action);
    result += "'";
  }
  return result;
}

std::string zsh(const Commands& commands) {
  std::string out =
      "#compdef ombe\n"
      "_ombe() {\n"
      "  local -a commands\n"
      "  commands=(\n";
  for (std::size_t i = 1; i < commands.size(); ++i) {
    out += "    " + quoted(commands[i].name + ":" + commands[i].purpose) + "\n";
  }
  out += "  )\n  if (( CURRENT == 2 )); then\n    _describe command commands\n    _arguments";
  for (const OptionDescription& option : commands[0].options) out += " " + zshArgument(option);
  out +=
      "\n    return\n  fi\n  local command=$words[2]\n  shift words; (( CURRENT-- ))\n"
      "  case $command in\n";
  for (std::size_t i = 1; i < commands.size(); ++i) {
    out += "    " + commands[i].name + ") _arguments";
    for (const OptionDescription& option : commands[i].options) {
      out += " \\\n      " + zshArgument(option);
    }
    out += " ;;\n";
  }
  return out + "  esac\n}\n_ombe \"$@\"\n";
}

std::string fishOption(const std::string& condition, const OptionDescription& option) {
  std::string line = "complete -c ombe -n " + quoted(condition);
  if (!option.isPositional) {
    for (const std::string& name : option.names) {
      line += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
    }
    if (!option.value.empty()) line += option.takesFile ? " -rF" : " -x";
  }
  if (!option.choices.empty()) line += " -a " + quoted(join(option.choices, " "));
  return line + " -d " + quoted(option.purpose, "\\") + "\n";
}

std::string fish(const Commands& commands) {
  std::string out = "# fish completion for ombe\n";
  for (const CommandDescription& command : commands) {
    const bool isProgram = &command == &commands.front();
    const std::string condition =
        isProgram ? "__fish_use_subcommand" : "__fish_seen_subcommand_from " + command.name;
    if (!isProgram) {
      out += fmt::format("complete -c ombe -f -n __fish_use_subcommand -a {} -d {}\n", command.name,
                         quoted(command.purpose, "\\"));
    }
    for (const OptionDescription& option : command.options) {
      if (!option.isPositional || !option.choices.empty()) out += fishOption(condition, option);
    }
  }
  return out;
}

struct Shell {
  const char* name;
  std::string (*script)(const Commands&);
};

constexpr Shell kShells[] = {{"bash", bash}, {"zsh", zsh}, {"fish", fish}};

}  // namespace

std::string completionScript(std::string_view shell, const Commands& commands) {
  for (const Shell& known : kShells) {
    if (known.name == shell) return known.script(commands);
  }
  return {};
}

std::vector<std::string> completionShells() {
  std::vector<std::string> names;
  for (const Shell& known : kShells) names.emplace_back(known.name);
  return names;
}

}  // namespace Ombe
