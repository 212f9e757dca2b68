// Files that must not outlive an interrupted run.
#pragma once

#include <atomic>
#include <string>

namespace Ombe {

/// While it lives, SIGINT, SIGTERM and SIGHUP remove the file of that name before they end the
/// process; signals that are ignored stay ignored. Any thread; a few dozen at once, and those
/// beyond are not covered.
class TemporaryFileGuard {
 public:
  explicit TemporaryFileGuard(const std::string& path);
  TemporaryFileGuard(const TemporaryFileGuard&) = delete;
  TemporaryFileGuard& operator=(const TemporaryFileGuard&) = delete;
  ~TemporaryFileGuard();

 private:
  std::atomic<const char*>* slot_ = nullptr;
};

}  // namespace Ombe
