#include "host/export/export.h"

#include "host/export/export_steps.h"
#include "host/io/messages.h"

namespace Ombe {
namespace {

/// The format that the ending of an output's name stands for, `other` if it does for none.
std::string formatOf(const std::string& output, const std::string& other) {
  for (const std::string& format : writerNames()) {
    if (output.ends_with("." + format)) return format;
  }
  return other;
}

ExitCode exportOne(const std::string& source, ExportOptions options) {
  if (options.takesEnding) {
    options.writer.format = formatOf(options.output, options.writer.format);
  }
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
