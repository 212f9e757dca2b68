// The commands of the program, one file each.
#pragma once

#include "host/cli/exit_code.h"

namespace Ombe {

struct Options;

/// Each writes its data to standard output or where the options say, and its messages to standard
/// error. Throws Failure where it cannot go on.
ExitCode runProbe(const Options& options);
ExitCode runInfo(const Options& options);
ExitCode runExport(const Options& options);
ExitCode runCheck(const Options& options);
ExitCode runInspect(const Options& options);
ExitCode runCompletion(const Options& options);
/// Writes the manual page.
ExitCode runMan(const Options& options);
ExitCode runPlay(const Options& options);

}  // namespace Ombe
