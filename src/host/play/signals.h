// Signals as something to wait for.
#pragma once

#include <csignal>

namespace Ombe {

/// While it lives, the signals that end or stop a program, or tell of its terminal, are not acted
/// upon but read here; those that are ignored stay ignored. One at a time, made on the program's
/// only thread.
class HeldSignals {
 public:
  HeldSignals();
  HeldSignals(const HeldSignals&) = delete;
  HeldSignals& operator=(const HeldSignals&) = delete;
  /// Signals that have come and were not taken act now.
  ~HeldSignals();

  /// Readable when a signal is there.
  [[nodiscard]] int descriptor() const { return descriptor_; }
  /// 0 when there is none.
  [[nodiscard]] int take() const;
  /// Stops the process as SIGTSTP does, and returns when it goes on.
  static void stop();

 private:
  sigset_t before_;
  int descriptor_;
};

}  // namespace Ombe
