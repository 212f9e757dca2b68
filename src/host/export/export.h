// Sources written in another format.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "host/batch/outputs.h"
#include "host/cli/exit_code.h"
#include "host/session/session.h"
#include "host/session/sync.h"
#include "host/writers/subtitle_writer.h"

namespace Ombe {

struct ExportOptions {
  SessionOptions session = {};
  FilmTimes times = {};
  WriterOptions writer = {};
  /// To write instead; without it, what the ending of the output's name stands for, if anything.
  std::optional<std::string> format = std::nullopt;
  OutputChoice choice = {};
  std::size_t jobs = 0;  ///< threads; 0 for as many as there are processors
};

/// Writes one source to the output, or several, folders among them, each to a file of its own below
/// it. Outputs that are inputs as well are refused before anything is written. Of several sources,
/// one that fails keeps none of the others from being written; what became of them goes to standard
/// error. Throws Failure: for a single source, or before anything is written.
ExitCode exportSources(const std::vector<std::string>& sources, ExportOptions options);

}  // namespace Ombe
