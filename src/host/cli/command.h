// A command of the program as data: the parser, the manual page and the completions are made of it.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "host/cli/exit_code.h"
#include "host/text/number_text.h"

namespace Ombe {

/// Takes what was typed for an option ("" for a flag); false when it cannot be read. What it stores
/// into belongs to its command.
using Setter = std::function<bool(const std::string& text)>;

struct Option {
  std::vector<std::string> names;  ///< short ones first, with dashes; of a positional one a word
  std::string value = {};          ///< what stands for the value; empty for flags and positionals
  std::string purpose = {};
  std::vector<std::string> choices = {};                    ///< the only values there are, if so
  std::optional<std::pair<int, int>> range = std::nullopt;  ///< least and greatest value
  std::string initial = {};                                 ///< the default, as help shows it
  std::string more = {};                                    ///< sentences for the manual page alone
  std::string refusal = {};  ///< what is said of a value that cannot be read
  bool takesFile = false;    ///< the value names a file or a folder
  bool isRequired = false;
  bool isRepeated = false;
  bool isShared = false;  ///< other commands have the same, so that it is told once for all
  bool isRare = false;    ///< for --help-all and the manual page alone
  Setter set = {};        ///< none for what the parser answers by itself

  [[nodiscard]] bool isPositional() const { return !names.front().starts_with('-'); }
  [[nodiscard]] bool isFlag() const { return !isPositional() && value.empty(); }
};

/// A word or a key, and what it means.
using Meaning = std::pair<std::string, std::string>;

struct Command {
  std::string name = {};  ///< the word that it is typed as, given with the heading
  std::string purpose;
  std::string footer;  ///< example and remarks
  std::vector<Option> options = {};
  /// Does the work with the options as they were set, which it owns. Writes data to standard output
  /// or where the options say, and messages to standard error. Throws Failure.
  std::function<ExitCode()> run = {};
  std::vector<Meaning> keys = {};  ///< those that it takes, for the manual page alone
  bool isHidden = false;           ///< meant for the build, not for people
  std::string heading = {};        ///< which it stands under in help
};

inline constexpr char kVersion[] = "--version";
inline constexpr char kHelpPurpose[] = "Print this help message and exit";
inline constexpr char kHelpAllPurpose[] = "Print help with rare options as well and exit";

// One file each in host/commands makes them.
Command probeCommand();
Command infoCommand();
Command exportCommand();
Command playCommand();
Command checkCommand();
Command fixCommand();
Command inspectCommand();
Command validateCommand();
Command completionCommand();
Command manCommand();

/// The program as a whole, then what the first word of a command line asks of: the command that it
/// names, none for the version, and else all of them. Making them all costs as much as a small
/// file.
std::vector<Command> commandsFor(std::string_view word);
inline std::vector<Command> allCommands() { return commandsFor({}); }

/// Parses the words of the command line and runs the command that they name. Help, version and
/// messages on wrong usage are written here. Throws what the command throws.
ExitCode runCommandLine(int argc, char** argv);

/// Stores what `parse` makes of the text, an optional value.
template <typename T, typename Parse>
Setter parsedInto(T& target, Parse parse) {
  return [&target, parse](const std::string& text) {
    const auto value = parse(text);
    if (value) target = *value;
    return value.has_value();
  };
}

/// A decimal number, all of the text, with or without a sign.
template <typename T>
std::optional<T> parseSigned(std::string_view text) {
  const bool hasPlus = text.starts_with('+') && !text.starts_with("+-");
  return parseNumber<T>(text.substr(hasPlus ? 1 : 0));
}

/// Stores a number or a text, adds to texts, or sets a flag.
template <typename T>
Setter into(T& target) {
  if constexpr (std::is_same_v<T, bool>) {
    return [&target](const std::string& /*none*/) { return target = true; };
  } else if constexpr (std::is_arithmetic_v<T>) {
    return parsedInto(target, parseSigned<T>);
  } else if constexpr (std::is_same_v<T, std::vector<std::string>>) {
    return [&target](const std::string& text) { return target.push_back(text), true; };
  } else {
    return [&target](const std::string& text) { return target = text, true; };
  }
}

/// Completes an option that takes one of few words, each of which stands for a value.
template <typename T>
Option choosing(Option option, T& target, const std::vector<std::pair<std::string, T>>& values) {
  for (const auto& [word, value] : values) option.choices.push_back(word);
  option.set = parsedInto(target, [values](const std::string& text) {
    std::optional<T> chosen;
    for (const auto& [word, value] : values) {
      if (word == text) chosen = value;
    }
    return chosen;
  });
  return option;
}

}  // namespace Ombe
