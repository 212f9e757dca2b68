// What the command line asked for.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/cli/exit_code.h"
#include "host/io/color_choice.h"
#include "host/play/play.h"
#include "host/session/session.h"
#include "host/writers/subtitle_writer.h"

namespace CLI {
class App;
}

namespace Ombe {

struct Options {
  SessionOptions session;
  bool log = false;
  std::vector<std::string> files;
  WriterOptions writer;
  std::string output = "-";
  std::size_t jobs = 0;    ///< threads; 0 for as many as there are processors
  std::size_t limit = 20;  ///< findings of a kind to show; 0 for all
  std::string shell;
  bool json = false;
  ColorMode color = ColorMode::kAuto;
  PlayOptions play;
  /// The command, once one was named.
  ExitCode (*run)(const Options&) = nullptr;
};

/// The whole command line, to be parsed into `options`, which must outlive it. Help is made from
/// it, and so can be whatever else describes it.
std::unique_ptr<CLI::App> makeCommandLine(Options& options);

/// Fills in the options; an exit code when that ends the run: after help and version, and after a
/// message on wrong usage.
std::optional<ExitCode> parseCommandLine(int argc, char** argv, Options& options);

}  // namespace Ombe
