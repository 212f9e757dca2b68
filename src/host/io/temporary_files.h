// Files that must not outlive the program.
#pragma once

#include <sys/types.h>

#include <mutex>
#include <string>

namespace Ombe {

/// A new file that can be read and written and goes with its last descriptor, whatever ends the
/// process: without a name in `folder`, or in memory where the file system has no such files.
/// -1 and errno otherwise.
int openUnnamed(const std::string& folder, mode_t permissions);

/// While it lives, SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE, SIGXCPU and SIGXFSZ remove the file
/// of that name before they end the process; signals that are ignored stay ignored. There is one at
/// a time: the constructor waits for that of another thread.
class TemporaryFileGuard {
 public:
  explicit TemporaryFileGuard(std::string path);
  TemporaryFileGuard(const TemporaryFileGuard&) = delete;
  TemporaryFileGuard& operator=(const TemporaryFileGuard&) = delete;
  ~TemporaryFileGuard();

  [[nodiscard]] const char* path() const { return path_.c_str(); }

 private:
  std::unique_lock<std::mutex> lock_;
  std::string path_;
};

}  // namespace Ombe
