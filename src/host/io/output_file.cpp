#include "host/io/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

#include "host/io/descriptor_io.h"
#include "host/io/failure.h"
#include "host/io/temporary_files.h"
#include "host/text/visible_text.h"

namespace Ombe {
namespace fs = std::filesystem;
namespace {

/// Where links lead that end at no file yet.
std::string behindLinks(fs::path path) {
  constexpr int kLinkCount = 40;  // as the system follows; links may change meanwhile
  for (int count = 0; count < kLinkCount; ++count) {
    std::error_code error;
    const fs::path next = fs::read_symlink(path, error);
    if (error) break;
    path = path.parent_path() / next;
  }
  return path.string();
}

/// Gives a file the owner, the group and the permissions of the one that it replaces, as far as
/// this user may, but never the right to run as somebody else. No more open than that one was: a
/// group that could not be kept passes on what everybody had. A file system without permissions
/// refuses all of it.
void makeLike(const struct stat& replaced, int file) {
  mode_t permissions = replaced.st_mode & 0777U;
  const bool keepsGroup = ::fchown(file, replaced.st_uid, replaced.st_gid) == 0 ||
                          ::fchown(file, static_cast<uid_t>(-1), replaced.st_gid) == 0;
  if (!keepsGroup) permissions = (permissions & 0707U) | (permissions & 07U) << 3U;
  static_cast<void>(::fchmod(file, permissions));
}

/// An error number, 0 for success. A file system that cannot do it has nothing to wait for.
int syncToDisk(int descriptor) {
  return ::fsync(descriptor) == 0 || errno == EINVAL || errno == EROFS ? 0 : errno;
}

/// An error number, 0 for success, also for a folder that may be written but not read.
int syncNames(const std::string& folder) {
  const int entries = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (entries < 0) return 0;
  const int error = syncToDisk(entries);
  ::close(entries);
  return error;
}

std::string folderOf(const std::string& path) {
  const std::string folder = fs::path(path).parent_path().string();
  return folder.empty() ? "." : folder;
}

[[noreturn]] void failToWrite(const std::string& path, int error) {
  throw Failure(path, Step::kWrite, "cannot be written: " + std::generic_category().message(error));
}

}  // namespace

void UnsyncedFolders::add(const std::string& folder) {
  const std::lock_guard lock(mutex_);
  folders_.insert(folder);
}

void UnsyncedFolders::sync() {
  const std::lock_guard lock(mutex_);
  const std::string* failed = nullptr;
  int error = 0;
  for (const std::string& folder : folders_) {
    const int result = syncNames(folder);
    if (result == 0) continue;
    failed = &folder;
    error = result;
  }
  if (failed != nullptr) failToWrite(*failed, error);
}

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
    makeLike(existing, descriptor_);
  }
}

OutputFile::~OutputFile() {
  if (descriptor_ >= 0 && descriptor_ != STDOUT_FILENO) ::close(descriptor_);
}

void OutputFile::commit(UnsyncedFolders* later) {
  flush();
  if (isUnnamed_) {
    const std::string folder = folderOf(target_);
    if (later != nullptr) later->add(folder);  // first, since memory may be short
    replaceTarget(folder);
    const int error = later == nullptr ? syncNames(folder) : 0;
    if (error != 0) fail(error);
  }
  if (descriptor_ == STDOUT_FILENO) return;
  // It is closed whatever was said, and what mattered was synced.
  if (::close(std::exchange(descriptor_, -1)) != 0 && errno != EINTR) fail(errno);
}

void OutputFile::openTemporary(mode_t permissions) {
  permissions_ = permissions;
  descriptor_ = openUnnamed(folderOf(target_), permissions);
  if (descriptor_ < 0) fail(errno);
  isUnnamed_ = true;
}

/// The file itself gets the name where it can, a copy of it otherwise. An error number.
int OutputFile::giveName(const TemporaryName& name) {
  if (name.give(descriptor_) == 0) return 0;
  if (errno == EEXIST) return errno;
  const int copy = name.make(permissions_);
  if (copy < 0) return errno;
  struct stat replaced {};
  if (::stat(target_.c_str(), &replaced) == 0) makeLike(replaced, copy);
  int error = ::lseek(descriptor_, 0, SEEK_SET) != 0 ? errno : copyBytes(descriptor_, copy);
  if (error == 0) error = syncToDisk(copy);
  if (::close(copy) != 0 && errno != EINTR && error == 0) error = errno;
  if (error != 0) ::unlink(name.path());
  return error;
}

void OutputFile::replaceTarget(const std::string& folder) {
  static std::atomic<unsigned> count{0};
  int error = syncToDisk(descriptor_);
  do {
    if (error != 0 && error != EEXIST) fail(error);
    const std::string name = "/.ombe-" + std::to_string(::getpid()) + "-" + std::to_string(++count);
    const TemporaryName temporary(folder + name);
    error = giveName(temporary);
    if (error == 0 && std::rename(temporary.path(), target_.c_str()) != 0) {
      error = errno;
      ::unlink(temporary.path());
      fail(error);
    }
  } while (error != 0);
}

void OutputFile::flush() {
  if (text_ == Text::kAsItCame && ::isatty(descriptor_) != 0) buffer_ = visibleText(buffer_);
  if (const int error = writeBytes(descriptor_, buffer_); error != 0) fail(error);
  buffer_.clear();
}

void OutputFile::fail(int error) const { failToWrite(path_, error); }

void writeOutput(const std::string& path, std::string text, OutputFile::Text kind) {
  OutputFile output(path, kind);
  output.buffer() = std::move(text);
  output.commit();
}

}  // namespace Ombe
