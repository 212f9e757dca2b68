#include "host/cli/options.h"
#include "host/commands/commands.h"
#include "host/export/export_batch.h"
#include "host/export/export_file.h"
#include "host/export/export_options.h"
#include "host/io/messages.h"

namespace Ombe {

ExitCode runExport(const Options& all) {
  const ExportOptions options{all.session, all.writer, all.output, all.jobs};
  if (isBatch(all.files, options.output)) {
    if (options.output == "-") {
      reportError("several files need a folder to go to: add -o DIR");
      return ExitCode::kWrongUsage;
    }
    return exportBatch(planExport(all.files, options.output, options.writer.format), options);
  }
  for (const std::string& remark : exportFile(all.files.front(), options.output, options)) {
    reportError(remark);
  }
  return ExitCode::kDone;
}

}  // namespace Ombe
