#include "host/export/export.h"

#include <strings.h>

#include <filesystem>

#include "host/batch/in_order.h"
#include "host/batch/items.h"
#include "host/export/export_file.h"
#include "host/io/messages.h"

namespace Ombe {
namespace {

/// The format that the ending of an output's name stands for, `other` if it does for none.
std::string formatOf(const std::string& output, const std::string& other) {
  const std::string ending = std::filesystem::path(output).extension().string();
  for (const std::string& format : writerNames()) {
    if (::strcasecmp(ending.c_str(), ("." + format).c_str()) == 0) return format;
  }
  return other;
}

ExitCode exportOne(const std::string& source, const ExportOptions& options) {
  const std::string& output = options.choice.output;
  refuseOverwriting({{{NamedSource::Kind::kNamed, source, "", ""}, output}});
  if (isKept(output, options.choice)) {
    reportError(output + " exists");
    return ExitCode::kDone;
  }
  for (const std::string& remark : exportFile(source, output, options)) reportError(remark);
  return ExitCode::kDone;
}

ExitCode exportEach(std::vector<BatchItem> items, const ExportOptions& options) {
  const Session attempt(options.session);  // without a plug-in there is one failure, not many
  const WriteItem write = [&options](BatchItem& item) {
    if (!prepareOutput(item, options.choice)) return;
    item.remarks = exportFile(item.source.path, item.output, options);
  };
  runInOrder(
      items.size(), options.jobs, [&](std::size_t number) { processItem(items[number], write); },
      {}, [&](std::size_t number) { return items[number].source.path; });
  return reportItems(items);
}

}  // namespace

ExitCode exportSources(const std::vector<std::string>& sources, ExportOptions options) {
  const OutputChoice& choice = options.choice;
  if (const std::string objection = objectionTo(sources, choice); !objection.empty()) {
    reportError(objection);
    return ExitCode::kWrongUsage;
  }
  std::string& format = options.writer.format;
  const bool isEach = isBatch(sources, choice);
  if (options.takesEnding) format = formatOf(isEach ? choice.name : choice.output, format);
  if (!isEach) return exportOne(sources.front(), options);
  auto items = planOutputs(sources, choice, "." + format);
  refuseOverwriting(items);
  return exportEach(std::move(items), options);
}

}  // namespace Ombe
