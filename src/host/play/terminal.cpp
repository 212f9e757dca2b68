#include "host/play/terminal.h"

#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>

#include "host/io/descriptor_io.h"
#include "host/io/failure.h"

namespace Ombe {
namespace {

// Another screen without cursor and without wrapping, so that a character which takes more room
// than thought moves nothing; and back.
constexpr std::string_view kEnter = "\x1B[?1049h\x1B[?25l\x1B[?7l\x1B[2J";
constexpr std::string_view kLeave = "\x1B[0m\x1B[?7h\x1B[?25h\x1B[?1049l";

}  // namespace

void writeAll(int descriptor, std::string_view text) {
  if (const int error = writeBytes(descriptor, text); error != 0) {
    throw Failure("standard output", Step::kWrite,
                  "cannot be written: " + std::generic_category().message(error));
  }
}

Terminal::Terminal() : before_() {
  if (::tcgetattr(STDIN_FILENO, &before_) != 0) {
    throw Failure("standard input", Step::kRead, "is no terminal");
  }
  try {
    enter();
  } catch (...) {
    leave();
    throw;
  }
}

Terminal::~Terminal() { leave(); }

void Terminal::enter() const {
  termios raw = before_;
  raw.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO | IEXTEN);
  raw.c_iflag &= ~static_cast<tcflag_t>(IXON);
  raw.c_cc[VMIN] = 1;
  raw.c_cc[VTIME] = 0;
  ::tcsetattr(STDIN_FILENO, TCSADRAIN, &raw);
  writeAll(STDOUT_FILENO, kEnter);
}

void Terminal::leave() const {
  try {
    writeAll(STDOUT_FILENO, kLeave);
  } catch (const Failure&) {
    // A terminal that is gone needs no restoring.
  }
  // What was typed ahead was meant for the player, not for the shell.
  ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &before_);
}

ScreenSize Terminal::size() const {
  winsize size{};
  if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_row == 0 || size.ws_col == 0) {
    return {24, 80};
  }
  return {size.ws_row, size.ws_col};
}

Terminal::Wake Terminal::wait(std::optional<std::chrono::milliseconds> longest) {
  pollfd sources[] = {{STDIN_FILENO, POLLIN, 0}, {signals_.descriptor(), POLLIN, 0}};
  Wake wake;
  if (::poll(sources, std::size(sources), longest ? static_cast<int>(longest->count()) : -1) <= 0) {
    return wake;
  }
  if (sources[1].revents != 0) takeSignals(wake);
  if (sources[0].revents != 0) {
    char bytes[256];
    const ssize_t count = ::read(STDIN_FILENO, bytes, sizeof bytes);
    if (count > 0) wake.bytes.assign(bytes, static_cast<std::size_t>(count));
    wake.isClosed = count == 0 || (count < 0 && errno != EINTR && errno != EAGAIN);
  }
  return wake;
}

void Terminal::takeSignals(Wake& wake) {
  while (const int signal = signals_.take()) {
    if (signal == SIGTSTP) {
      leave();
      HeldSignals::stop();
    }
    // Who knows what is on the screen after a stop, also after one that nobody can hold.
    if (signal == SIGTSTP || signal == SIGCONT) {
      enter();
      wake.redraw = wake.wasStopped = true;
    } else if (signal == SIGWINCH) {
      wake.redraw = true;
    } else if (signal != SIGPIPE) {  // of which the write tells
      wake.endingSignal = signal;
    }
  }
}

}  // namespace Ombe
