// The command line, from its words to the exit code.
#pragma once

#include "host/cli/exit_code.h"

namespace Ombe {

/// Parses the words and runs the command that they name. Help, version and messages on wrong usage
/// are written here. Throws what the command throws.
ExitCode runCommandLine(int argc, char** argv);

}  // namespace Ombe
