#include "host/export/export.h"

#include "host/export/export_steps.h"
#include "host/io/messages.h"

namespace Ombe {
namespace {

ExitCode exportOne(const std::string& source, const ExportOptions& options) {
  refuseOverwriting({{{NamedSource::Kind::kNamed, source, "", ""}, options.output}});
  for (const std::string& remark : exportFile(source, options.output, options)) {
    reportError(remark);
  }
  return ExitCode::kDone;
}

}  // namespace

ExitCode exportSources(const std::vector<std::string>& sources, const ExportOptions& options) {
  if (!isBatch(sources, options.output)) return exportOne(sources.front(), options);
  if (options.output == "-") {
    reportError("several files need a folder to go to: add -o DIR");
    return ExitCode::kWrongUsage;
  }
  auto items = planExport(sources, options.output, options.writer.format);
  refuseOverwriting(items);
  exportItems(items, options);
  return reportItems(items);
}

}  // namespace Ombe
