// The manual page.
#pragma once

#include <string>
#include <vector>

#include "host/cli/command.h"

namespace Ombe {

/// ombe(1) in troff with the man macros; the first command is the program. Pure.
std::string manPage(const std::string& version, const std::vector<Command>& commands);

}  // namespace Ombe
