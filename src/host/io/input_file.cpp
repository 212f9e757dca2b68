#include "host/io/input_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "host/io/environment.h"
#include "host/text/utf8_scan.h"

namespace Ombe {
namespace fs = std::filesystem;

InputFile::InputFile(const std::string& name) : name_(name), path_(name) {
  if (name.empty()) throw Failure(Step::kRead, "an empty name names no file");
  if (name == "-") {
    name_ = "standard input";
    makeTemporary([](int file) { return copyBytes(STDIN_FILENO, file); });
  } else if (const fs::path path = fs::absolute(name); !isUtf8(path.native())) {
    // One that cannot be opened is told by its name.
    descriptor_.reset(::open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (descriptor_.get() >= 0) nameDescriptor(path.filename().string());
  }
}

InputFile InputFile::holding(std::string_view content) { return {content, Holding{}}; }

InputFile::InputFile(std::string_view content, Holding /*tag*/) : name_("temporary file") {
  makeTemporary([content](int file) { return writeBytes(file, content); });
}

template <typename Fill>
void InputFile::makeTemporary(const Fill& fill) {
  const std::string_view folder = environment("TMPDIR");
  descriptor_.reset(openUnnamed(folder.empty() ? "/tmp" : std::string(folder), 0600));
  const int error = descriptor_.get() < 0 ? errno : fill(descriptor_.get());
  if (error == 0) return nameDescriptor(name_ + ".sub");
  throw Failure(name_, Step::kRead, "cannot be copied: " + std::generic_category().message(error));
}

void InputFile::nameDescriptor(const std::string& name) {
  path_ = "/proc/self/fd/" + std::to_string(descriptor_.get());
  path_.append(1, '\0').append("/").append(name);
}

}  // namespace Ombe
