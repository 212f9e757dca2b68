#include "host/io/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "host/io/descriptor_io.h"
#include "host/io/failure.h"
#include "host/text/visible_text.h"

namespace Ombe {
namespace fs = std::filesystem;
namespace {

/// Where links lead that end at no file yet.
std::string behindLinks(fs::path path) {
  constexpr int kMost = 40;  // as the system follows; links may change meanwhile
  for (int count = 0; count < kMost; ++count) {
    std::error_code error;
    const fs::path next = fs::read_symlink(path, error);
    if (error) break;
    path = path.parent_path() / next;
  }
  return path.string();
}

}  // namespace

OutputFile::OutputFile(const std::string& path, Text text)
    : text_(text), path_(path), target_(path) {
  buffer_.reserve(kWriteSize + kWriteSize / 4);
  struct stat existing {};
  if (path == "-") {
    path_ = "standard output";
    descriptor_ = STDOUT_FILENO;
  } else if (::stat(path.c_str(), &existing) != 0) {
    if (errno != ENOENT) fail(errno);
    target_ = behindLinks(path);
    openTemporary(0666);
  } else if (!S_ISREG(existing.st_mode)) {
    descriptor_ = ::open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
    if (descriptor_ < 0) fail(errno);
  } else {
    // A file that may not be written is not to be replaced either, nor a link to one.
    if (::access(path.c_str(), W_OK) != 0) fail(errno);
    std::error_code error;
    target_ = fs::canonical(path, error).string();
    if (error) fail(error.value());
    openTemporary(existing.st_mode & 0777U);
    // A file system without permissions refuses; the file is no more open than it was then.
    static_cast<void>(::fchmod(descriptor_, existing.st_mode & 07777U));
  }
}

OutputFile::~OutputFile() {
  if (descriptor_ >= 0 && descriptor_ != STDOUT_FILENO) ::close(descriptor_);
  if (!temporary_.empty()) ::unlink(temporary_.c_str());
}

void OutputFile::commit() {
  flush();
  close();
  if (temporary_.empty()) return;
  if (std::rename(temporary_.c_str(), target_.c_str()) != 0) fail(errno);
  temporary_.clear();
  guard_.reset();
}

void OutputFile::openTemporary(mode_t permissions) {
  static std::atomic<unsigned> count{0};
  const fs::path folder = fs::path(target_).parent_path();
  do {
    const std::string name = ".ombe-" + std::to_string(::getpid()) + "-" + std::to_string(++count);
    const std::string path = (folder / name).string();
    const TemporaryFileMaking making;
    descriptor_ = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, permissions);
    if (descriptor_ < 0) continue;
    temporary_ = path;
    guard_.emplace(path);
  } while (descriptor_ < 0 && errno == EEXIST);
  if (descriptor_ < 0) fail(errno);
}

void OutputFile::flush() {
  if (text_ == Text::kAsItCame && ::isatty(descriptor_) != 0) buffer_ = visibleText(buffer_);
  if (const int error = writeBytes(descriptor_, buffer_); error != 0) fail(error);
  buffer_.clear();
}

void OutputFile::close() {
  if (descriptor_ == STDOUT_FILENO) return;
  const int descriptor = descriptor_;
  descriptor_ = -1;
  if (::close(descriptor) != 0) fail(errno);
}

void OutputFile::fail(int error) const {
  throw Failure(path_, Step::kWrite,
                "cannot be written: " + std::generic_category().message(error));
}

}  // namespace Ombe
