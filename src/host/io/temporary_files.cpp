#include "host/io/temporary_files.h"

#include <poll.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <mutex>

namespace Ombe {
namespace {

/// Names by malloc. Whoever takes one out of its slot owns it; the handler then keeps it, since it
/// must not free.
std::atomic<const char*> slots[64];
std::atomic<bool> ending{false};
std::atomic<int> making{0};  // threads that are about to make a file or its guard
static_assert(std::atomic<const char*>::is_always_lock_free &&
                  std::atomic<bool>::is_always_lock_free && std::atomic<int>::is_always_lock_free,
              "used by a signal handler");

[[noreturn]] void waitForTheEnd() {
  for (;;) ::pause();
}

void removeAll(int signal) {
  // Another thread's handler is at it and ends the process when all is removed, not before.
  if (ending.exchange(true)) waitForTheEnd();
  // None of those is this thread, which held signals back meanwhile. A file system that does not
  // answer must not keep the process alive.
  for (int i = 0; i < 1000 && making != 0; ++i) ::poll(nullptr, 0, 1);
  for (auto& slot : slots) {
    if (const char* path = slot.exchange(nullptr); path != nullptr) ::unlink(path);
  }
  // Arrives on return and ends the process as if the handler had never been.
  std::signal(signal, SIG_DFL);
  static_cast<void>(std::raise(signal));
}

void installHandlers() {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE, SIGXCPU, SIGXFSZ}) {
    struct sigaction action {};
    if (::sigaction(signal, nullptr, &action) != 0 || action.sa_handler != SIG_DFL) continue;
    action.sa_handler = removeAll;
    ::sigfillset(&action.sa_mask);
    ::sigaction(signal, &action, nullptr);
  }
}

}  // namespace

TemporaryFileGuard::TemporaryFileGuard(const std::string& path) {
  static std::once_flag installed;
  std::call_once(installed, installHandlers);
  char* name = ::strdup(path.c_str());
  if (name == nullptr) return;
  for (auto& slot : slots) {
    const char* expected = nullptr;
    if (slot.compare_exchange_strong(expected, name)) {
      slot_ = &slot;
      return;
    }
  }
  std::free(name);
}

TemporaryFileGuard::~TemporaryFileGuard() {
  if (slot_ != nullptr) std::free(const_cast<char*>(slot_->exchange(nullptr)));
}

TemporaryFileMaking::TemporaryFileMaking() : before_() {
  sigset_t all;
  ::sigfillset(&all);
  ::pthread_sigmask(SIG_BLOCK, &all, &before_);
  ++making;
  if (!ending) return;
  --making;
  waitForTheEnd();
}

TemporaryFileMaking::~TemporaryFileMaking() {
  --making;
  ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

}  // namespace Ombe
