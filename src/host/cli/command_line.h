// The command line, from its words to the exit code.
#pragma once

#include <vector>

#include "host/cli/command.h"

namespace Ombe {

/// Parses the words and runs the command that they name, the first of `commands` being the program.
/// Help, version and messages on wrong usage are written here. Throws what the command throws.
ExitCode runCommandLine(int argc, char** argv, const std::vector<Command>& commands);

}  // namespace Ombe
