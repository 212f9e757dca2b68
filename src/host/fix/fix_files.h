// Many files mended.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "host/batch/outputs.h"
#include "host/cli/exit_code.h"
#include "host/fix/fix_file.h"

namespace Ombe {

struct FixRequest {
  std::vector<std::string> sources = {};
  OutputChoice choice = {};
  bool inPlace = false;  ///< replaces the files, and keeps each as NAME.orig
  bool dryRun = false;   ///< writes nothing
  bool json = false;
  std::size_t jobs = 0;  ///< threads; 0 for as many as there are processors
  FixOptions options = {};

  /// Whether there are outputs besides the sources.
  [[nodiscard]] bool hasOutputs() const { return !inPlace && !dryRun; }
};

/// Mends every source and says what was done to each line: on standard output, or on standard error
/// where the text goes there. Outputs that are inputs as well are refused before anything is
/// written; a file that cannot be mended keeps no other from being mended. Throws Failure.
ExitCode fixSources(const FixRequest& request);

}  // namespace Ombe
