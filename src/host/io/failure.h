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

/// Thrown where a command cannot go on; the message names the file and what is wrong.
class Failure : public std::runtime_error {
 public:
  Failure(ExitCode code, const std::string& message)
      : std::runtime_error(message),
        code_(code),
        step_(code == ExitCode::kNoPlugin ? "load" : "start"),
        reason_(message) {}
  /// For one file: "FILE: REASON". `step` is a word for what was being done, a literal.
  Failure(const std::string& file, const char* step, const std::string& reason)
      : std::runtime_error(file + ": " + reason),
        code_(ExitCode::kRefused),
        step_(step),
        file_(file),
        reason_(reason) {}

  [[nodiscard]] ExitCode code() const { return code_; }
  [[nodiscard]] const char* step() const { return step_; }
  [[nodiscard]] const std::string& file() const { return file_; }  ///< empty when it is of none
  [[nodiscard]] const std::string& reason() const { return reason_; }

 private:
  ExitCode code_;
  const char* step_;
  std::string file_;
  std::string reason_;
};

}  // namespace Ombe
