#include "host/play/signals.h"

#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace Ombe {

HeldSignals::HeldSignals() : before_(), descriptor_(-1) {
  sigset_t held;
  ::sigemptyset(&held);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGTSTP, SIGCONT, SIGWINCH, SIGPIPE}) {
    struct sigaction action {};
    ::sigaction(signal, nullptr, &action);
    if (action.sa_handler != SIG_IGN) ::sigaddset(&held, signal);
  }
  descriptor_ = ::signalfd(-1, &held, SFD_NONBLOCK | SFD_CLOEXEC);
  if (descriptor_ < 0) throw std::system_error(errno, std::generic_category(), "signalfd");
  ::pthread_sigmask(SIG_BLOCK, &held, &before_);
}

HeldSignals::~HeldSignals() {
  ::close(descriptor_);
  ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

int HeldSignals::take() const {
  signalfd_siginfo info{};
  return ::read(descriptor_, &info, sizeof info) == sizeof info ? static_cast<int>(info.ssi_signo)
                                                                : 0;
}

void HeldSignals::stop() {
  sigset_t signal;
  ::sigemptyset(&signal);
  ::sigaddset(&signal, SIGTSTP);
  ::raise(SIGTSTP);
  ::pthread_sigmask(SIG_UNBLOCK, &signal, nullptr);  // stops here
  ::pthread_sigmask(SIG_BLOCK, &signal, nullptr);
}

}  // namespace Ombe
