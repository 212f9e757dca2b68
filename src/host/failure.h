// What ends a command early.
#pragma once

#include <stdexcept>
#include <string>

namespace Ombe {

/// Exit codes of the program.
enum class ExitCode : int {
  kDone = 0,
  kRefused = 1,     ///< the source was refused or could not be read, or the output not be written
  kWrongUsage = 2,  ///< the command line asks for what there is not
  kNoPlugin = 3,    ///< the plug-in could not be loaded
};

/// Thrown where a command cannot go on; the message names the file and the step.
class Failure : public std::runtime_error {
 public:
  Failure(ExitCode code, const std::string& message) : std::runtime_error(message), code_(code) {}
  /// As above for one file: "FILE: what".
  Failure(const std::string& file, const std::string& what)
      : Failure(ExitCode::kRefused, file + ": " + what) {}

  [[nodiscard]] ExitCode code() const { return code_; }

 private:
  ExitCode code_;
};

}  // namespace Ombe
