#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <thread>

#include "host/play/play.h"
#include "host/play/player.h"
#include "host/play/terminal.h"
#include "host/text/number_text.h"

namespace Ombe {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::microseconds;

std::string makeLine(const Caption& caption, ColorOrder order, ColorDepth depth) {
  std::string line = timeText(caption.start) + " --> " + timeText(caption.end);
  const char* separator = "  ";
  for (const StyledLine& part : parseMarkup(caption.text, order)) {
    line += separator;
    for (const Span& span : part) appendStyled(line, span, depth);
    separator = " | ";
  }
  return line + "\n";
}

/// Real time until something begins, or for a while, since the end of a subtitle is not announced.
microseconds untilNext(const Player& player) {
  constexpr std::int64_t kLongestSleep = 50000;
  const auto next = player.nextTime();
  if (!next) return microseconds(kLongestSleep);
  const std::int64_t away = (*next - player.position()) * 1000 * 1000 / player.speed();
  return microseconds(std::clamp<std::int64_t>(away, 0, kLongestSleep));
}

}  // namespace

void playAsLines(Session& session, const PlayOptions& options, ColorDepth depth) {
  std::string lines;
  Player player(session, options.start, options.speed, [&](const Caption& caption) {
    lines += makeLine(caption, options.colorOrder, depth);
  });
  auto before = Clock::now();
  for (;;) {
    writeAll(STDOUT_FILENO, lines);
    lines.clear();
    if (player.isAtEnd()) return;
    std::this_thread::sleep_for(untilNext(player));
    const auto now = Clock::now();
    player.advance(std::chrono::duration_cast<microseconds>(now - before));
    before = now;
  }
}

}  // namespace Ombe
