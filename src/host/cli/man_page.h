// The manual page.
#pragma once

#include <string>
#include <vector>

#include "host/cli/command_description.h"

namespace Ombe {

/// ombe(1) in troff with the man macros. Pure.
std::string manPage(const std::string& version, const std::vector<CommandDescription>& commands);

}  // namespace Ombe
