#include "host/io/temporary_files.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <utility>

namespace Ombe {
namespace {

std::mutex naming;
std::atomic<const char*> guarded{nullptr};  // whoever takes it out may use it
std::atomic<pid_t> maker{0};                // thread in a call that makes the file
std::atomic<bool> isEnding{false};
static_assert(std::atomic<const char*>::is_always_lock_free &&
                  std::atomic<pid_t>::is_always_lock_free,
              "used by a signal handler");

void removeGuarded(int signal) {
  isEnding = true;
  // On another thread a file may be about to be there; on this one, the call does not go on.
  for (pid_t other = maker; other != 0 && other != ::gettid(); other = maker) ::poll(nullptr, 0, 1);
  if (const char* path = guarded.exchange(nullptr); path != nullptr) ::unlink(path);
  // Arrives on return and ends the process as if the handler had never been.
  std::signal(signal, SIG_DFL);
  static_cast<void>(std::raise(signal));
}

/// For threads that meet the end of the process while it is being tidied up.
[[noreturn]] void awaitEnd() {
  for (;;) ::pause();
}

template <typename Call>
int made(const Call& call) {
  maker = ::gettid();
  if (isEnding) {
    maker = 0;
    awaitEnd();
  }
  const int result = call();
  maker = 0;
  return result;
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

TemporaryName::TemporaryName(std::string path) : lock_(naming), path_(std::move(path)) {
  static std::once_flag handled;
  std::call_once(handled, handleSignals);
  guarded = path_.c_str();
}

TemporaryName::~TemporaryName() {
  if (guarded.exchange(nullptr) == nullptr) awaitEnd();
}

int TemporaryName::give(int descriptor) const {
  const std::string unnamed = "/proc/self/fd/" + std::to_string(descriptor);
  return made([&] {
    return ::linkat(AT_FDCWD, unnamed.c_str(), AT_FDCWD, path_.c_str(), AT_SYMLINK_FOLLOW);
  });
}

int TemporaryName::make(mode_t permissions) const {
  return made(
      [&] { return ::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, permissions); });
}

}  // namespace Ombe
