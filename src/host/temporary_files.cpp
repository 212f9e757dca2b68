#include "host/temporary_files.h"

#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <mutex>

namespace Ombe {
namespace {

/// Names by malloc. Whoever takes one out of its slot owns it; the handler then keeps it, since it
/// must not free.
std::atomic<const char*> slots[64];
static_assert(std::atomic<const char*>::is_always_lock_free, "used by a signal handler");

void removeAll(int signal) {
  for (auto& slot : slots) {
    if (const char* path = slot.exchange(nullptr); path != nullptr) ::unlink(path);
  }
  // The handler was reset when it was entered: this ends the process as if it had never been.
  static_cast<void>(std::raise(signal));
}

void installHandlers() {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction action {};
    if (::sigaction(signal, nullptr, &action) != 0 || action.sa_handler != SIG_DFL) continue;
    action.sa_handler = removeAll;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
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

}  // namespace Ombe
