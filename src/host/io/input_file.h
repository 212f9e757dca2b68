// A source as it is named on the command line.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/io/failure.h"
#include "host/io/temporary_files.h"

namespace Ombe {

/// A file, or "-" for standard input, which is copied to a temporary file (in TMPDIR, else /tmp)
/// with the ending .sub, since plug-ins read files; the destructor removes it.
class InputFile {
 public:
  /// Throws Failure when standard input cannot be copied.
  explicit InputFile(const std::string& name);
  /// A temporary file of that content. Throws Failure.
  static InputFile holding(std::string_view content);
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;
  ~InputFile();

  /// What to open.
  [[nodiscard]] const std::string& path() const { return path_; }
  /// What to call it in messages.
  [[nodiscard]] const std::string& name() const { return name_; }

 private:
  struct Holding {};
  InputFile(std::string_view content, Holding tag);
  template <typename Fill>
  void makeTemporary(const Fill& fill);

  std::string name_;
  std::string path_;
  std::optional<TemporaryFileGuard> guard_;
};

/// Calls `use`. A Failure that names the file opened, which for standard input is a copy, leaves as
/// one that names the input.
template <typename Use>
auto asNamed(const InputFile& input, const Use& use) {
  try {
    return use();
  } catch (const Failure& failure) {
    if (failure.file() != input.path()) throw;
    throw Failure(input.name(), failure.step(), failure.reason());
  }
}

}  // namespace Ombe
