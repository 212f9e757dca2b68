// Names of files that must not outlive the program.
#pragma once

#include <sys/types.h>

#include <mutex>
#include <string>

namespace Ombe {

/// A name for a file on its way to its place. While this lives, SIGINT, SIGTERM, SIGHUP, SIGQUIT,
/// SIGPIPE, SIGXCPU and SIGXFSZ on any thread remove the file of that name before they end the
/// process; signals that are ignored stay ignored. There is one at a time: the constructor waits
/// for that of another thread.
class TemporaryName {
 public:
  explicit TemporaryName(std::string path);
  TemporaryName(const TemporaryName&) = delete;
  TemporaryName& operator=(const TemporaryName&) = delete;
  ~TemporaryName();

  [[nodiscard]] const char* path() const { return path_.c_str(); }

  /// Gives the name to an open file that has none. As linkat(2).
  [[nodiscard]] int give(int descriptor) const;
  /// Makes a file of that name to be written. As open(2).
  [[nodiscard]] int make(mode_t permissions) const;

 private:
  std::unique_lock<std::mutex> lock_;
  std::string path_;
};

}  // namespace Ombe
