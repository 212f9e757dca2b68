#include <unistd.h>

#include <csignal>
#include <string_view>

#include "host/check/stated_rate.h"
#include "host/cli/options.h"
#include "host/commands/commands.h"
#include "host/io/descriptor_io.h"
#include "host/io/environment.h"
#include "host/io/input_file.h"
#include "host/io/messages.h"
#include "host/session/session.h"
#include "host/session/settings.h"
#include "host/text/garbled_texts.h"

namespace Ombe {
namespace {

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

/// With a rate that was chosen, the plug-in reads no header.
std::string findFileRate(Session& session, const std::string& path, bool isChosen) {
  SettingValue value;
  const auto get = [&](const Setting& setting) {
    return !isChosen && session.controller().getValue(setting, value);
  };
  const bool hasSignature = get(autodetectedSetting()) && value.asBoolean().value_or(false);
  const String* codePage = hasSignature && get(codePageSetting()) ? value.asString() : nullptr;
  return fileRateText(isChosen ? "" : path,
                      codePage == nullptr ? "" : std::string(view(*codePage)));
}

/// Guesses for a file that needs a code page and got none.
std::vector<std::string> findLikelyCodePages(Session& session) {
  GarbledTexts garbled;
  session.readToEnd([&garbled](const Chunk& chunk) { garbled.take(chunk.text()); });
  return garbled.likelyCodePages();
}

/// The signal that ended it, or 0. Everything is let go of on return.
int run(const Options& options) {
  const bool onTerminal = options.play.interactive && isScreen();
  ColorDepth depth = onTerminal ? ColorDepth::kNoColor : ColorDepth::kNoStyle;
  if (wantsColor(options.color, STDOUT_FILENO)) {
    depth = terminalColorDepth(environment("COLORTERM"), environment("TERM"));
  }
  const InputFile input(options.files.front());
  PlayOptions play = options.play;
  Session session(options.session);
  {
    const LoadingNotice notice(onTerminal);
    asNamed(input, [&] { session.open(input.path()); });
    play.fileRate = findFileRate(session, input.path(), options.session.frameRate.has_value());
    if (!options.session.codePage) play.likelyCodePages = findLikelyCodePages(session);
  }
  if (onTerminal) return playOnTerminal(session, play, depth);
  if (!play.likelyCodePages.empty()) {
    reportError(input.name() + ": not UTF-8: try --code-page " + play.likelyCodePages.front());
  }
  playAsLines(session, play, depth);
  return 0;
}

}  // namespace

ExitCode runPlay(const Options& options) {
  // Whoever sent the signal is to see that it was what ended the program.
  if (const int signal = run(options); signal != 0) static_cast<void>(std::raise(signal));
  return ExitCode::kDone;
}

}  // namespace Ombe
