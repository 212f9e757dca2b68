#include "host/export/export.h"

#include <strings.h>

#include <filesystem>

#include "host/batch/in_order.h"
#include "host/batch/items.h"
#include "host/check/check.h"
#include "host/check/fitted_times.h"
#include "host/io/heap.h"
#include "host/io/input_file.h"
#include "host/io/messages.h"
#include "host/io/output_file.h"
#include "host/session/subtitle.h"
#include "host/text/likely_code_pages.h"
#include "host/text/number_text.h"

namespace Ombe {
namespace {

void remarkOn(const GarbledTexts& garbled, std::vector<std::string>& remarks) {
  if (garbled.count() == 0) return;
  remarks.push_back(countText(garbled.count(), "text") + (garbled.count() == 1 ? " is" : " are") +
                    " not UTF-8: " + codePageAdvice(garbled.likelyCodePages()));
}

std::vector<std::string> exportSession(Session& session, const InputFile& input,
                                       const std::string& output, const ExportOptions& options,
                                       UnsyncedFolders* later) {
  openExplained(session, input, options.session);
  fitTimes(session, input.path(), options.times);
  const auto offset = static_cast<std::int32_t>(session.host().getTimeOffset());
  const std::unique_ptr<SubtitleWriter> writer = makeWriter(options.writer);
  OutputFile file(output);
  GarbledTexts garbled;
  std::size_t leftOut = 0;
  writer->begin(file.buffer());
  session.readToEnd([&](const Chunk& chunk) {
    const auto subtitle = timedSubtitle(chunk, offset);
    if (!subtitle) {
      ++leftOut;
      return;
    }
    garbled.take(subtitle->text);
    writer->append(*subtitle, file.buffer());
    file.drain();
  });
  writer->end(file.buffer());
  std::vector<std::string> remarks = writer->remarks();
  if (const auto& choice = session.codePageChoice()) {
    remarks.insert(remarks.begin(), describe(*choice));
  }
  if (leftOut != 0) {
    remarks.push_back("left out " + std::to_string(leftOut) +
                      " of its subtitles: their times would be before 0 or beyond the last");
  }
  remarkOn(garbled, remarks);
  for (std::string& remark : remarks) remark.insert(0, input.name() + ": ");
  file.commit(later);  // last, so that no file is in its place and told as failed
  return remarks;
}

/// Writes the subtitles of `input` ("-" is standard input) to `output`. Returns remarks for the
/// person who asked. Throws Failure, and then the output is as it was. Any thread.
std::vector<std::string> exportFile(const std::string& input, const std::string& output,
                                    const ExportOptions& options,
                                    UnsyncedFolders* later = nullptr) {
  const InputFile file(input);
  readyHeap(file.path());
  Session session(options.session);
  return asNamed(file, [&] { return exportSession(session, file, output, options, later); });
}

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
  UnsyncedFolders folders;
  const WriteItem write = [&](BatchItem& item) {
    if (!prepareOutput(item, options.choice)) return;
    item.remarks = exportFile(item.source.path, item.output, options, &folders);
  };
  runInOrder(
      items.size(), options.jobs, [&](std::size_t number) { processItem(items[number], write); },
      {}, [&](std::size_t number) { return items[number].source.path; });
  const ExitCode result = reportItems(items);
  folders.sync();
  return result;
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
  format = options.format.value_or(formatOf(isEach ? choice.name : choice.output, format));
  if (!isEach) return exportOne(sources.front(), options);
  auto items = planOutputs(sources, choice, "." + format);
  refuseOverwriting(items);
  return exportEach(std::move(items), options);
}

}  // namespace Ombe
