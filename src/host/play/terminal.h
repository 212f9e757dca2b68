// The terminal, taken over and given back.
#pragma once

#include <termios.h>

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "host/play/screen.h"
#include "host/play/signals.h"

namespace Ombe {

/// Writes all of it; throws Failure.
void writeAll(int descriptor, std::string_view text);

/// While it lives, the terminal of standard input and output shows a screen of its own and hands
/// over every key as it is pressed. The destructor leaves the terminal as it was, and so does a
/// stop until it goes on; signals come as answers of `wait`, so every way out runs the destructor.
/// One at a time, on one thread.
class Terminal {
 public:
  /// What ended a wait.
  struct Wake {
    std::string bytes = {};   ///< that were typed
    bool redraw = false;      ///< the screen may have changed
    bool wasStopped = false;  ///< time that has passed does not count
    int endingSignal = 0;     ///< asks the program to end
    bool isClosed = false;    ///< nobody will ever type again
  };

  /// Throws Failure when there is no terminal.
  Terminal();
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;
  ~Terminal();

  [[nodiscard]] ScreenSize size() const;
  /// Until a key, a signal, or the end of the time; without a time, for as long as it takes.
  Wake wait(std::optional<std::chrono::milliseconds> longest);

 private:
  void enter() const;
  void leave() const;
  void takeSignals(Wake& wake);

  HeldSignals signals_;
  termios before_;
};

}  // namespace Ombe
