#include <fmt/format.h>

#include "host/cli/descriptions.h"

namespace Ombe {
namespace {

/// The scripts of one shell, with holes: @name@ and @purpose@ of a command, its @options@.
struct Shell {
  const char* name;
  std::string_view script;   ///< also @list@ and @commands@, and @names@ of all commands
  std::string_view listed;   ///< each command in @list@
  std::string_view command;  ///< each command in @commands@
  std::string (*options)(const Command&);
};

std::string filled(std::string_view text, const std::vector<Meaning>& holes) {
  std::string result(text);
  for (const auto& [name, content] : holes) {
    for (std::size_t at = 0; (at = result.find(name, at)) != std::string::npos;) {
      result.replace(at, name.size(), content);
      at += content.size();
    }
  }
  return result;
}

/// For between single quotes, as all three shells read them; `escaped` are further bytes to put a
/// backslash before.
std::string quoted(std::string_view text, std::string_view escaped) {
  std::string result;
  for (const char c : text) {
    if (escaped.find(c) != std::string_view::npos) result += '\\';
    result += c == '\'' ? "'\\''" : std::string(1, c);
  }
  return result;
}

std::string join(const std::vector<std::string>& words, std::string_view separator) {
  return fmt::format("{}", fmt::join(words, separator));
}

// A word behind an option that takes one of few values, or one that nothing can be said of, is
// completed by these; a word that begins with a dash by the options; any other by the words that
// the command takes, or else as a file.
constexpr std::string_view kBash =
    R"(# bash completion for ombe: source it, or keep it in a folder of bash-completion.
_ombe() {
  local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]} options= words=
  [ "$previous" != = ] || previous=${COMP_WORDS[COMP_CWORD-2]}
  [ "$word" != = ] || word=
  COMPREPLY=()
  case $COMP_CWORD:${COMP_WORDS[1]} in
    1:*)
@options@      words='@names@' ;;
@commands@  esac
  case $word in
    -*) COMPREPLY=($(compgen -W "$options" -- "$word")) ;;
    *) [ -n "$words" ] || compopt -o default
      COMPREPLY=($(compgen -W "$words" -- "$word")) ;;
  esac
}
complete -F _ombe ombe
)";

std::string bashOptions(const Command& command) {
  std::vector<std::string> names, words, unknown;
  std::string values;
  for (const Option& option : command.options) {
    std::vector<std::string>& more = option.isPositional() ? words : names;
    const std::vector<std::string>& added = option.isPositional() ? option.choices : option.names;
    more.insert(more.end(), added.begin(), added.end());
    if (option.value.empty() || option.takesFile) continue;
    const std::string cases = join(option.names, "|");
    if (option.choices.empty()) {
      unknown.push_back(cases);
    } else {
      values +=
          fmt::format("        {}) options= words='{}' ;;\n", cases, join(option.choices, " "));
    }
  }
  std::string result =
      fmt::format("      options='{}' words='{}'\n", join(names, " "), join(words, " "));
  if (unknown.empty()) return result;
  return result + fmt::format("      case $previous in\n{}        {}) return ;;\n      esac\n",
                              values, join(unknown, "|"));
}

constexpr std::string_view kZsh = R"(#compdef ombe
_ombe() {
  local -a commands
  commands=(
@list@  )
  if (( CURRENT == 2 )); then
    _describe command commands
    _arguments@options@
    return
  fi
  local command=$words[2]
  shift words; (( CURRENT-- ))
  case $command in
@commands@  esac
}
_ombe "$@"
)";

std::string zshOptions(const Command& command) {
  std::string result;
  for (const Option& option : command.options) {
    std::string action = option.choices.empty() ? (option.takesFile ? "_files" : " ")
                                                : "(" + join(option.choices, " ") + ")";
    if (option.isPositional()) {
      result += fmt::format(" \\\n      '*:{}:{}'", option.names[0], action);
      continue;
    }
    const std::string value = option.isFlag() ? "" : ":" + option.value + ":" + action;
    const std::string purpose = quoted(option.purpose, "[]:\\");
    for (const std::string& name : option.names) {
      result += fmt::format(" \\\n      '{}[{}]{}'", name, purpose, value);
    }
  }
  return result;
}

std::string fishOptions(const Command& command) {
  const std::string condition =
      command.run ? "'__fish_seen_subcommand_from " + command.name + "'" : "__fish_use_subcommand";
  std::string result;
  for (const Option& option : command.options) {
    if (option.isPositional() && option.choices.empty()) continue;
    result += "complete -c ombe -n " + condition;
    for (const std::string& name : option.names) {
      if (option.isPositional()) continue;
      result += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
    }
    if (!option.value.empty()) result += option.takesFile ? " -rF" : " -x";
    if (!option.choices.empty()) result += " -a '" + join(option.choices, " ") + "'";
    result += " -d '" + quoted(option.purpose, "\\") + "'\n";
  }
  return result;
}

constexpr Shell kShells[] = {
    {"bash", kBash, "", "    *:@name@)\n@options@      ;;\n", bashOptions},
    {"zsh", kZsh, "    '@name@:@purpose@'\n", "    @name@) _arguments@options@ ;;\n", zshOptions},
    {"fish", "# fish completion for ombe\n@options@@commands@", "",
     "complete -c ombe -f -n __fish_use_subcommand -a @name@ -d '@purpose@'\n@options@",
     fishOptions},
};

std::string script(const Shell& shell, const std::vector<Command>& commands) {
  std::string list, all;
  std::vector<std::string> names;
  for (const Command& command : commands) {
    if (!command.run || command.isHidden) continue;
    names.push_back(command.name);
    const std::vector<Meaning> holes = {{"@name@", command.name},
                                        {"@purpose@", quoted(command.purpose, "\\")},
                                        {"@options@", shell.options(command)}};
    list += filled(shell.listed, holes);
    all += filled(shell.command, holes);
  }
  return filled(shell.script, {{"@options@", shell.options(commands.front())},
                               {"@names@", join(names, " ")},
                               {"@list@", list},
                               {"@commands@", all}});
}

}  // namespace

std::string completionScript(std::string_view shell, const std::vector<Command>& commands) {
  for (const Shell& known : kShells) {
    if (known.name == shell) return script(known, commands);
  }
  return {};
}

std::vector<std::string> completionShells() {
  std::vector<std::string> names;
  for (const Shell& known : kShells) names.emplace_back(known.name);
  return names;
}

}  // namespace Ombe
