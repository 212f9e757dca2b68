#include "host/io/input_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <system_error>

#include "host/io/descriptor_io.h"
#include "host/io/failure.h"

namespace Ombe {
namespace {

/// An error number, 0 for success.
int copyStandardInput(int file) {
  std::array<char, 65536> block{};
  for (;;) {
    const ssize_t got = readBytes(STDIN_FILENO, block.data(), block.size());
    if (got <= 0) return got == 0 ? 0 : errno;
    const int error = writeBytes(file, {block.data(), static_cast<std::size_t>(got)});
    if (error != 0) return error;
  }
}

}  // namespace

InputFile::InputFile(const std::string& name) : name_(name), path_(name) {
  if (name != "-") return;
  name_ = "standard input";
  makeTemporary(copyStandardInput);
}

InputFile InputFile::holding(std::string_view content) { return {content, Holding{}}; }

InputFile::InputFile(std::string_view content, Holding /*tag*/) : name_("temporary file") {
  makeTemporary([content](int file) { return writeBytes(file, content); });
}

InputFile::~InputFile() {
  if (guard_) ::unlink(path_.c_str());
}

template <typename Fill>
void InputFile::makeTemporary(const Fill& fill) {
  constexpr char kEnding[] = ".sub";
  const char* folder = std::getenv("TMPDIR");
  path_ = std::string(folder == nullptr || *folder == '\0' ? "/tmp" : folder) + "/ombe-XXXXXX";
  path_ += kEnding;
  int file = -1;
  int error = 0;
  {
    const TemporaryFileMaking making;
    file = ::mkostemps(path_.data(), sizeof kEnding - 1, O_CLOEXEC);
    if (file < 0) error = errno;
    if (file >= 0) guard_.emplace(path_);
  }
  if (file >= 0) {
    error = fill(file);
    if (::close(file) != 0 && error == 0) error = errno;
  }
  if (error == 0) return;
  if (file >= 0) ::unlink(path_.c_str());
  throw Failure(name_, Step::kRead, "cannot be copied: " + std::generic_category().message(error));
}

}  // namespace Ombe
