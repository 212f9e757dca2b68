#include "host/cli/options.h"
#include "host/commands/commands.h"
#include "host/export/export_batch.h"
#include "host/export/export_file.h"
#include "host/io/messages.h"

namespace Ombe {

ExitCode runExport(const Options& options) {
  if (isBatch(options.files, options.output)) {
    if (options.output == "-") {
      throw Failure(ExitCode::kWrongUsage, "several files need a folder to go to: add -o DIR");
    }
    return exportBatch(planExport(options.files, options.output, options.format), options);
  }
  const std::string remark = exportFile(options.files.front(), options.output, options);
  if (!remark.empty()) reportError(remark);
  return ExitCode::kDone;
}

}  // namespace Ombe
