#include "host/play/play.h"

#include <unistd.h>

#include <cmath>
#include <csignal>
#include <string_view>

#include "host/check/check.h"
#include "host/check/fitted_times.h"
#include "host/cli/common_options.h"
#include "host/cli/film_options.h"
#include "host/commands/export_line.h"
#include "host/io/descriptor_io.h"
#include "host/io/environment.h"
#include "host/io/input_file.h"
#include "host/io/messages.h"
#include "host/io/output_file.h"
#include "host/play/controls.h"
#include "host/play/player.h"
#include "host/session/session.h"
#include "host/text/likely_code_pages.h"
#include "host/text/number_text.h"

namespace Ombe {
namespace {

struct PlayArguments {
  std::vector<std::string> files;
  PlayOptions play;
  ColorMode color = ColorMode::kAuto;
  SessionOptions session;
  FilmTimes times;
};

bool isScreen() {
  return ::isatty(STDIN_FILENO) != 0 && ::isatty(STDOUT_FILENO) != 0 &&
         environment("TERM") != "dumb";
}

/// Says on a terminal, while it lives, that a large file takes its time. What goes wrong with the
/// terminal is told when there is something to play on it.
class LoadingNotice {
 public:
  explicit LoadingNotice(bool onTerminal) : onTerminal_(onTerminal) { write("loading ...\r"); }
  LoadingNotice(const LoadingNotice&) = delete;
  LoadingNotice& operator=(const LoadingNotice&) = delete;
  ~LoadingNotice() { write("\x1B[K"); }

 private:
  void write(std::string_view text) const {
    if (onTerminal_) static_cast<void>(writeBytes(STDOUT_FILENO, text));
  }

  const bool onTerminal_;
};

/// Guesses for a file that needs a code page and got none.
std::vector<std::string> findLikelyCodePages(Session& session) {
  GarbledTexts garbled;
  session.readToEnd([&garbled](const Chunk& chunk) { garbled.take(chunk.text()); });
  return garbled.likelyCodePages();
}

/// The signal that ended it, or 0. Everything is let go of on return.
int run(const PlayArguments& options) {
  const bool onTerminal = !options.play.printsLines && isScreen();
  ColorDepth depth = onTerminal ? ColorDepth::kNoColor : ColorDepth::kNoStyle;
  if (wantsColor(options.color, STDOUT_FILENO)) {
    depth = terminalColorDepth(environment("COLORTERM"), environment("TERM"));
  }
  const InputFile input(options.files.front());
  PlayOptions play = options.play;
  Played played{options.files.front(), options.session, play.colorOrder, std::nullopt};
  Session session(options.session);
  {
    const LoadingNotice notice(onTerminal);
    asNamed(input, [&] {
      openExplained(session, input, options.session);
      fitTimes(session, input.path(), options.times);
    });
    // With a rate that was chosen, the plug-in reads no header.
    played.fileRate =
        fileRate(session, chosenRate(options.session.frameRate).isSet() ? "" : input.path());
    if (const auto& rate = played.fileRate)
      play.fileRate = {rateText(*rate), rate->rate.perSecond()};
    if (const auto& choice = session.codePageChoice()) {
      reportError(input.name() + ": " + describe(*choice));
      play.likelyCodePages = choice->likely;
    } else if (!options.session.codePage) {
      play.likelyCodePages = findLikelyCodePages(session);
    }
  }
  if (onTerminal) {
    const Found before = Found::of(session);
    const int signal = playOnTerminal(session, play, depth);
    const Found after = Found::of(session);
    if (signal == 0 && !(before == after)) writeOutput("-", exportLine(played, after));
    return signal;
  }
  if (!play.likelyCodePages.empty() && !options.session.codePage) {
    reportError(input.name() + ": not UTF-8: try --code-page " + play.likelyCodePages.front());
  }
  playAsLines(session, play, depth);
  return 0;
}

ExitCode play(const PlayArguments& options) {
  // Whoever sent the signal is to see that it was what ended the program.
  if (const int signal = run(options); signal != 0) static_cast<void>(std::raise(signal));
  return ExitCode::kDone;
}

/// In thousandths it must be at least one, and fit where the stream takes it.
std::optional<std::int32_t> parseSpeed(const std::string& text) {
  const std::optional<double> factor = parseSigned<double>(text);
  if (!factor || !(*factor >= 0.001 && *factor <= 1e6)) return std::nullopt;
  return static_cast<std::int32_t>(std::lround(*factor * Player::kNormalSpeed));
}

std::vector<Option> ownOptions(PlayArguments& asked) {
  return {fileOption(asked.files),
          {.names = {"--start"},
           .value = "TIME",
           .purpose = "Where to begin",
           .more = "Without it, at 0.",
           .refusal = "is no time such as 90, 1:30 or 1:02:03.5",
           .set = parsedInto(asked.play.start, parseTime)},
          {.names = {"--speed"},
           .value = "X",
           .purpose = "Times the normal speed: 0.25, 2",
           .more = "Without it, 1.",
           .refusal = "must be between 0.001 and 1000000",
           .set = parsedInto(asked.play.speed, parseSpeed)},
          {.names = {"--no-interactive"},
           .purpose = "Print lines, without keys",
           .set = into(asked.play.printsLines)},
          colorOption(asked.color),
          colorOrderOption(asked.play.colorOrder)};
}

}  // namespace

Command playCommand() {
  const auto asked = std::make_shared<PlayArguments>();
  Command command = {.purpose = "Play the subtitles in the terminal",
                     .footer = "Example: ombe play movie.sub --start 1:30",
                     .options = withSourceOptions(ownOptions(*asked), asked->session),
                     .run = [asked] { return play(*asked); }};
  for (const auto& [name, meaning] : Controls::keys()) command.keys.push_back({name, meaning});
  return withFilmTimes(std::move(command), asked->times, asked->session);
}

}  // namespace Ombe
