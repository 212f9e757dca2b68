// The command line, described for people and for shells. The first command is the program.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/cli/command.h"

namespace Ombe {

/// ombe(1) in troff with the man macros. Pure.
std::string manPage(const std::string& version, const std::vector<Command>& commands);

/// The script by which "bash", "zsh" or "fish" completes the command line; empty for any other
/// shell. Pure.
std::string completionScript(std::string_view shell, const std::vector<Command>& commands);
std::vector<std::string> completionShells();

}  // namespace Ombe
