// A source as it is named on the command line.
#pragma once

#include <string>
#include <string_view>

#include "host/io/descriptor_io.h"
#include "host/io/failure.h"

namespace Ombe {

/// A file, or "-" for standard input, which is copied to a file without a name (in TMPDIR, else
/// /tmp), since plug-ins read files. A file whose path is no UTF-8, so that no URI can name it, is
/// opened here.
class InputFile {
 public:
  /// Throws Failure when standard input cannot be copied, or the name is empty.
  explicit InputFile(const std::string& name);
  /// A temporary file of that content. Throws Failure.
  static InputFile holding(std::string_view content);

  /// What to open. Of what has no name for a URI, the number of its descriptor, and behind a NUL,
  /// to which the system and plug-ins read, a name with an ending for plug-ins to go by.
  [[nodiscard]] const std::string& path() const { return path_; }
  /// What to call it in messages.
  [[nodiscard]] const std::string& name() const { return name_; }

 private:
  struct Holding {};
  InputFile(std::string_view content, Holding tag);
  template <typename Fill>
  void makeTemporary(const Fill& fill);
  void nameDescriptor(const std::string& name);

  std::string name_;
  std::string path_;
  Descriptor descriptor_;  // none for a file that is opened by its name
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
