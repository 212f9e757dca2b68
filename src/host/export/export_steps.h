// The steps of an export: plan, write, report.
#pragma once

#include <exception>
#include <string>
#include <vector>

#include "host/cli/exit_code.h"
#include "host/io/named_sources.h"

namespace Ombe {

struct ExportOptions;

/// One source, and what became of it.
struct ExportItem {
  NamedSource source;
  std::string output = {};  ///< empty when the source is not to be written

  enum class Result { kFailed, kWritten, kSkipped };
  Result result = Result::kFailed;
  std::vector<std::string> remarks = {};  ///< lines for the person who asked
  /// Why it was not written; none where the source says why, or memory was short.
  std::exception_ptr failure = nullptr;
};

/// Whether one output each is asked for, in a folder, rather than one output.
bool isBatch(const std::vector<std::string>& sources, const std::string& output);

/// Every source with its output below `folder`: the source's name with the ending of the format. A
/// file found in a folder keeps its path inside it, behind the folder's name where several were
/// named. A source whose output is taken by an earlier one keeps its own ending before the new one,
/// and gets a number if need be.
std::vector<ExportItem> planExport(const std::vector<std::string>& sources,
                                   const std::string& folder, const std::string& format);

/// Throws Failure when an output is, by whatever name, the file of an input or of another output.
void refuseOverwriting(const std::vector<ExportItem>& items);

/// Writes the subtitles of `input` ("-" is standard input) to `output`. Returns remarks for the
/// person who asked. Throws Failure, and then the output is as it was. Any thread.
std::vector<std::string> exportFile(const std::string& input, const std::string& output,
                                    const ExportOptions& options);

/// Exports every item on as many threads as the options say, each with a session of its own, and
/// notes the results. Shows progress on a terminal. Throws before anything is written, if at all.
void exportItems(std::vector<ExportItem>& items, const ExportOptions& options);

/// A summary and what is to be said of single items on standard error, in the order of the items.
/// Throws nothing: the summary is written even when there is no memory.
ExitCode reportItems(const std::vector<ExportItem>& items);

}  // namespace Ombe
