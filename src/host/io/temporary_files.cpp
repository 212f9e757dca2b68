#include "host/io/temporary_files.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <utility>

namespace Ombe {
namespace {

std::mutex naming;
std::atomic<const char*> guarded{nullptr};
static_assert(std::atomic<const char*>::is_always_lock_free, "used by a signal handler");

void removeGuarded(int signal) {
  if (const char* path = guarded.exchange(nullptr); path != nullptr) ::unlink(path);
  // Arrives on return and ends the process as if the handler had never been.
  std::signal(signal, SIG_DFL);
  static_cast<void>(std::raise(signal));
}

void handleSignals() {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE, SIGXCPU, SIGXFSZ}) {
    struct sigaction action {};
    if (::sigaction(signal, nullptr, &action) != 0 || action.sa_handler != SIG_DFL) continue;
    action.sa_handler = removeGuarded;
    ::sigfillset(&action.sa_mask);
    ::sigaction(signal, &action, nullptr);
  }
}

}  // namespace

int openUnnamed(const std::string& folder, mode_t permissions) {
  const int file = ::open(folder.c_str(), O_RDWR | O_TMPFILE | O_CLOEXEC, permissions);
  if (file >= 0 || (errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL)) return file;
  return ::memfd_create("ombe", MFD_CLOEXEC);
}

TemporaryFileGuard::TemporaryFileGuard(std::string path) : lock_(naming), path_(std::move(path)) {
  static std::once_flag handled;
  std::call_once(handled, handleSignals);
  guarded = path_.c_str();
}

TemporaryFileGuard::~TemporaryFileGuard() { guarded = nullptr; }

}  // namespace Ombe
