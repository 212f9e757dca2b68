#include <unistd.h>

#include <chrono>

#include "host/play/controls.h"
#include "host/play/play.h"
#include "host/play/terminal.h"

namespace Ombe {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds kTick{40};           // between pictures
constexpr milliseconds kSequencePause{50};  // longer than any within the bytes of one key

std::optional<milliseconds> longestWait(const Player& player, const KeyDecoder& keys) {
  if (!player.isPaused() && !player.isAtEnd()) return kTick;
  if (keys.isWaiting()) return kSequencePause;
  return std::nullopt;
}

}  // namespace

int playOnTerminal(Session& session, const PlayOptions& options, ColorDepth depth) {
  Player player(session, options.start, options.speed);
  Tuning tuning(session.controller(), options.likelyCodePages, options.fileRate);
  Controls controls(player, tuning, options.colorOrder);
  Terminal terminal;
  KeyDecoder keys;
  Terminal::Wake wake;
  std::string shown;
  auto before = Clock::now();
  while (!controls.wantsToQuit() && !wake.isClosed) {
    std::string picture = drawFrame(controls.frame(), terminal.size(), depth);
    if (wake.redraw || picture != shown) writeAll(STDOUT_FILENO, picture);
    shown = std::move(picture);
    wake = terminal.wait(longestWait(player, keys));
    if (wake.endingSignal != 0) return wake.endingSignal;
    const auto now = Clock::now();
    if (!wake.wasStopped) {
      player.advance(std::chrono::duration_cast<std::chrono::microseconds>(now - before));
    }
    before = now;
    const auto presses = wake.bytes.empty() ? keys.flush() : keys.decode(wake.bytes);
    for (const KeyPress& press : presses) controls.press(press);
  }
  return 0;
}

}  // namespace Ombe
