// Scripts by which shells complete the command line.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/cli/command.h"

namespace Ombe {

/// For "bash", "zsh" or "fish"; empty for any other. The first command is the program. Pure.
std::string completionScript(std::string_view shell, const std::vector<Command>& commands);
std::vector<std::string> completionShells();

}  // namespace Ombe
