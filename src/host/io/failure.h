// What keeps a source from being played, or an output from being written.
#pragma once

#include <cstddef>
#include <iterator>
#include <stdexcept>
#include <string>

namespace Ombe {

/// What was being done.
enum class Step {
  kFind,     ///< looking for a plug-in
  kLoad,     ///< loading it and making a component
  kRead,     ///< reading the source
  kConvert,  ///< choosing its code page
  kProbe,    ///< asking the plug-in whether it is one of its own
  kOpen,
  kActivate,  ///< of its program and stream
  kDeliver,   ///< reading its subtitles
  kWrite,     ///< writing an output
};

/// A word for programs.
inline const char* stepName(Step step) {
  constexpr const char* kNames[] = {"load", "load",     "read",    "convert", "probe",
                                    "open", "activate", "deliver", "write"};
  static_assert(std::size(kNames) == static_cast<std::size_t>(Step::kWrite) + 1);
  return kNames[static_cast<std::size_t>(step)];
}

/// Thrown where there is no going on. Names no options and ends no process: what to advise is for
/// whoever catches it to know.
class Failure : public std::runtime_error {
 public:
  Failure(Step step, const std::string& reason)
      : std::runtime_error(reason), step_(step), reason_(reason) {}
  /// For one file: "FILE: REASON".
  Failure(const std::string& file, Step step, const std::string& reason)
      : std::runtime_error(file + ": " + reason), step_(step), file_(file), reason_(reason) {}

  [[nodiscard]] Step step() const { return step_; }
  [[nodiscard]] const std::string& file() const { return file_; }  ///< empty when it is of none
  [[nodiscard]] const std::string& reason() const { return reason_; }

 private:
  Step step_;
  std::string file_;
  std::string reason_;
};

}  // namespace Ombe
