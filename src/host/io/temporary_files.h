// Files that must not outlive an interrupted run.
#pragma once

#include <atomic>
#include <csignal>
#include <string>

namespace Ombe {

/// While it lives, SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE, SIGXCPU and SIGXFSZ remove the file
/// of that name before they end the process; signals that are ignored stay ignored. Any thread; a
/// few dozen at once, and those beyond are not covered.
class TemporaryFileGuard {
 public:
  explicit TemporaryFileGuard(const std::string& path);
  TemporaryFileGuard(const TemporaryFileGuard&) = delete;
  TemporaryFileGuard& operator=(const TemporaryFileGuard&) = delete;
  ~TemporaryFileGuard();

 private:
  std::atomic<const char*>* slot_ = nullptr;
};

/// Lives while a thread makes a temporary file and its guard: a signal that ends the process waits
/// that long (a second at most), and once one has come the constructor does not return. Keep it
/// short; not to be nested.
class TemporaryFileMaking {
 public:
  TemporaryFileMaking();
  TemporaryFileMaking(const TemporaryFileMaking&) = delete;
  TemporaryFileMaking& operator=(const TemporaryFileMaking&) = delete;
  ~TemporaryFileMaking();

 private:
  sigset_t before_;
};

}  // namespace Ombe
