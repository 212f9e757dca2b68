// Which output a source is written to.
#pragma once

#include <exception>
#include <string>
#include <vector>

#include "host/io/named_sources.h"

namespace Ombe {

/// Where outputs go, as a person says it.
struct OutputChoice {
  std::string output = "-";    ///< file, folder for several, or "-" for standard output
  bool isBeside = false;       ///< beside each source instead
  std::string name = {};       ///< of each, with "{stem}" for the source's; empty for the usual one
  bool keepsExisting = false;  ///< a source whose output exists is left out
};

/// One source, where it goes, and what became of it.
struct BatchItem {
  enum class Result { kFailed, kWritten, kReplaced, kUnchanged, kSkipped };

  NamedSource source;
  std::string output = {};  ///< empty when the source is not to be written
  Result result = Result::kFailed;
  std::vector<std::string> remarks = {};  ///< lines for the person who asked
  /// Why it was not written; none where the source says why, or memory was short.
  std::exception_ptr failure = nullptr;
};

/// Whether one output each is asked for, rather than one output.
bool isBatch(const std::vector<std::string>& sources, const OutputChoice& choice);

/// What is wrong with the choice for these sources; empty for nothing.
std::string objectionTo(const std::vector<std::string>& sources, const OutputChoice& choice);

/// Every source with its output: by the name chosen, or else the source's with the ending (".srt").
/// A file found in a folder keeps its path inside it, behind the folder's name where several were
/// named. A source whose output is taken by an earlier one keeps its own ending before the new one,
/// and gets a number if need be.
std::vector<BatchItem> planOutputs(const std::vector<std::string>& sources,
                                   const OutputChoice& choice, const std::string& ending);

/// Throws Failure when an output is, by whatever name, the file of an input or of another output.
void refuseOverwriting(const std::vector<BatchItem>& items);

}  // namespace Ombe
