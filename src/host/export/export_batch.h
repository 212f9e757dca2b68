// Many sources written at once.
#pragma once

#include <vector>

#include "host/cli/exit_code.h"
#include "host/export/export_plan.h"

namespace Ombe {

struct ExportOptions;

/// Exports every item on as many threads as the options say, each file with a session of its own.
/// One that fails keeps none of the others from being written. Progress (on a terminal), a summary
/// and the failures go to standard error.
ExitCode exportBatch(const std::vector<ExportItem>& items, const ExportOptions& options);

}  // namespace Ombe
