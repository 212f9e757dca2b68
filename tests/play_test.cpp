// The player: texts, keys and the clock, and what the program does to a terminal.
#include <gmock/gmock.h>
#include <poll.h>
#include <pty.h>
#include <unistd.h>

#include <csignal>

#include "host/play/controls.h"
#include "host/play/text_width.h"
#include "host/session/settings.h"
#include "host/text/number_text.h"
#include "host/text/visible_text.h"
#include "support/run_program.h"
#include "support/table.h"

namespace ombe_test {
namespace {

using namespace Ombe;  // NOLINT(google-build-using-namespace): the subject of every test here
using testing::EndsWith;
using testing::HasSubstr;

/// "[bi#00ff00:text]" for a span, "/" between lines.
std::string describe(const std::vector<StyledLine>& lines) {
  std::string out;
  for (const StyledLine& line : lines) {
    if (&line != lines.data()) out += "/";
    for (const auto& [style, text] : line) {
      char colour[16] = "";
      if (style.color) std::snprintf(colour, sizeof colour, "#%06x", *style.color);
      out += std::string("[") + (style.bold ? "b" : "") + (style.italic ? "i" : "") + colour;
      out += ":" + text + "]";
    }
  }
  return out;
}

TEST(Markup, BecomesLinesThatFitAndNothingThatATerminalObeys) {
  for (const auto& row : readTable("markup.txt")) {
    const std::vector<StyledLine> lines = parseMarkup(row[1]);
    const int columns = std::stoi(row[0]);
    EXPECT_EQ(describe(columns == 0 ? lines : wrapLine(lines[0], columns)), row[2]) << row[1];
  }
  EXPECT_EQ(visibleText(std::string("\0\n\t", 3)), "␀\n\t");
  EXPECT_EQ(cellCount("żółty e\u0301 日本 \U0001F600 \u200D"), 5 + 1 + 1 + 1 + 4 + 1 + 2 + 1);
  EXPECT_EQ(clipText("a日本", 4), "a日");
}

TEST(Colours, AreTheNearestThatTheTerminalHas) {
  std::string out;
  for (const ColorDepth depth :
       {terminalColorDepth("24bit", ""), terminalColorDepth("", "xterm-direct"),
        terminalColorDepth("", "xterm-256color"), terminalColorDepth("", "linux"),
        ColorDepth::kNoColor, ColorDepth::kNoStyle}) {
    appendStyled(out, {{true, false, 0x00CC64}, "x"}, depth);
  }
  appendStyled(out, {{false, false, 0x808081}, "y"}, ColorDepth::k256);
  EXPECT_EQ(out,
            "\x1B[0;3;38;2;0;204;100mx\x1B[0m\x1B[0;3;38;2;0;204;100mx\x1B[0m\x1B[0;3;38;5;"
            "41mx\x1B[0m\x1B[0;3;32mx\x1B[0m"
            "\x1B[0;3mx\x1B[0mx\x1B[0;38;5;244my\x1B[0m");
}

TEST(Screen, StacksSubtitlesMessageAndStatusFromTheBottom) {
  const Frame frame{parseMarkup("ab\n<b><i>cd"), "hint", "status too long"};
  const std::string low = ";1H\x1B[Khint\x1B[";
  const std::string status = ";1H\x1B[K\x1B[7mstatus\x1B[0m";
  EXPECT_EQ(drawFrame(frame, {6, 6}, ColorDepth::kTrue),
            "\x1B[1;1H\x1B[K\x1B[2;1H\x1B[K  ab\x1B[3;1H\x1B[K  \x1B[0;1;3mcd\x1B[0m"
            "\x1B[4;1H\x1B[K\x1B[5" +
                low + "6" + status);
  EXPECT_EQ(drawFrame(frame, {2, 6}, ColorDepth::kTrue), "\x1B[1" + low + "2" + status);
}

TEST(Time, IsReadAsPeopleTypeIt) {
  EXPECT_EQ(parseTime("1:02:03.5"), 3723500U);
  EXPECT_EQ(parseTime("0:90,25"), 90250U);
  EXPECT_EQ(parseTime("1193:02:47.295"), 4294967295U);
  for (const char* text : {"1193:02:47.296", "", ":30", "1:", "1::2", "1:2:3:4", "1.", "1.2345",
                           "-1", "1.x", "18446744073709551706", "90000000000000000"}) {
    EXPECT_EQ(parseTime(text), std::nullopt) << text;
  }
}

/// Position, what shows, where the next begins.
std::string stateOf(const Player& player) {
  std::string out = std::to_string(player.position());
  for (const Caption* caption : player.showing()) out += " " + caption->text;
  const auto next = player.nextTime();
  return out + (next ? " >" + std::to_string(*next) : "") + (player.isAtEnd() ? " end" : "");
}

TEST(Playing, FollowsTheClockAndEveryChange) {
  std::optional<TempFile> film;
  std::optional<Session> session;
  std::optional<Player> player;
  for (const auto& row : readTable("playing.txt")) {
    if (row[0] == "film") {
      player.reset();
      session.emplace(SessionOptions{.plugin = OMBE_PLUGIN}).open(film.emplace(row[1]).path());
      player.emplace(*session);
      continue;
    }
    const auto amount = std::stoll(row[0].substr(1));
    if (row[0][0] == '+') player->advance(std::chrono::milliseconds(amount));
    if (row[0][0] == '@') player->seek(amount);
    if (row[0][0] == 'x') player->setSpeed(static_cast<int>(amount));
    if (row[0][0] == 'p') player->setPaused(amount != 0);
    if (row[0][0] == 'o') player->setOffset(static_cast<int>(amount));
    if (row[0][0] == 'r') {
      const Ratio rate{static_cast<unsigned>(amount), 1};
      session->controller().setValue(frameRateSetting(), SettingValue::ratio(rate));
      player->refresh();
    }
    EXPECT_EQ(stateOf(*player), row[1]) << row[0];
  }
}

TEST(Playing, IsControlledByKeys) {
  const TempFile movie("{1}{1}25\n{25}{3000}{c:$FF0000}m\xF3j \xBF\xF3\xB3ty\n");
  Session session({.plugin = OMBE_PLUGIN});
  session.open(movie.path());
  Player player(session);
  Tuning tuning(session.controller(), {"IBM852"}, "25 fps (stated)");
  Controls controls(player, tuning, ColorOrder::kBgr);
  KeyDecoder decoder;
  const auto type = [&](std::string_view keys) {
    for (const char byte : keys) {
      for (const KeyPress& press : decoder.decode({&byte, 1})) controls.press(press);
    }
    return controls.frame();
  };
  for (auto row : readTable("keys.txt")) {
    row.resize(3);
    const Frame frame = type(row[0]);
    EXPECT_THAT(frame.status, HasSubstr(row[1])) << row[0];
    EXPECT_THAT(frame.message, HasSubstr(row[2])) << row[0];
  }
  EXPECT_EQ(describe(type("").captions), "[#0000ff:mój żółty]");
  player.setOffset(std::numeric_limits<std::int32_t>::min());
  EXPECT_THAT(type("o").status, HasSubstr(" -2147483648 ms"));
  session.host().setValue(autodetectedSetting(), SettingValue::boolean(true));
  EXPECT_THAT(type("c").message, HasSubstr("signature"));
  session.controller().setValue(frameRateSetting(), SettingValue::ratio({12, 1}));
  EXPECT_EQ(Tuning(session.controller(), {}, "").frameRateName(), "12 fps");
  type("\x1B[15");
  EXPECT_TRUE(decoder.isWaiting());
  EXPECT_TRUE(decoder.flush().empty()) << "a sequence that breaks off is no key";
  EXPECT_FALSE(decoder.isWaiting());
}

/// The built program on a terminal of its own.
struct OnTerminal {
  explicit OnTerminal(const std::string& arguments) {
    EXPECT_EQ(::openpty(&master, &slave, nullptr, nullptr, nullptr), 0);
    before = stty("-g");
    child = ::fork();
    if (child != 0) return;
    ::setpgid(0, 0);
    for (const int descriptor : {0, 1, 2}) ::dup2(slave, descriptor);
    ::close(master);
    const std::string command =
        "exec env -u NO_COLOR TERM=xterm COLORTERM=truecolor '" OMBE_BINARY "' " + arguments;
    ::execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
    ::_exit(127);
  }
  [[nodiscard]] std::string stty(const std::string& arguments) const {
    return runShell("/", std::string("stty -F ") + ::ttyname(slave) + " " + arguments).out;
  }
  void type(const char* keys) const { ::dprintf(master, "%s", keys); }
  /// Waits for `text` on a terminal that is taken over, behind what was waited for before.
  bool shows(std::string_view text, int patience = 60000) {
    char bytes[4096];
    for (pollfd source{master, POLLIN, 0}; output.find(text) == std::string::npos;) {
      if (::poll(&source, 1, patience) <= 0) return false;
      output.append(bytes, static_cast<std::size_t>(::read(master, bytes, sizeof bytes)));
    }
    output.erase(0, output.find(text) + text.size());
    return stty("-g") != before;
  }
  /// Waits until it has ended or stopped: what is left of the output, "raw" unless the terminal is
  /// as it was, and the status.
  std::string ended() {
    int status = 0;
    ::waitpid(child, &status, WUNTRACED);
    shows("\n\n\n", 0);  // comes never: reads all there is
    const std::string end =
        (stty("-g") == before ? "" : "raw ") + std::to_string(status & ~WCOREFLAG);
    return std::exchange(output, {}) + end;
  }

  int master = -1, slave = -1;  // both held open, to be asked after the end
  pid_t child = -1;
  std::string before, output;
};

const std::string kPlay = "play '" OMBE_SAMPLES_DIR "/styled.sub' ";
const std::string kEnter = "\x1B[?1049h";
const std::string kLeave = "\x1B[?7h\x1B[?25h\x1B[?1049l";

TEST(Terminal, ShowsWhatIsPlayedAndIsGivenBack) {
  OnTerminal terminal(kPlay + "--start 0:01");
  EXPECT_TRUE(terminal.shows(kEnter));
  EXPECT_TRUE(terminal.shows("\x1B[0;3mThe lighthouse"));
  terminal.type(" g12\r");
  EXPECT_TRUE(terminal.shows(";38;2;51;153;255mThe sea was blue"));
  EXPECT_EQ(terminal.stty("rows 30 cols 100"), "");
  ::kill(terminal.child, SIGWINCH);
  EXPECT_TRUE(terminal.shows("\x1B[30;1H\x1B[K\x1B[7m paused 00:00:12.000"));
  terminal.type("\x1B[Cg28\r ");
  EXPECT_TRUE(terminal.shows(" end 00:00:29.000"));
  ::kill(terminal.child, SIGTSTP);
  EXPECT_THAT(terminal.ended(), EndsWith(kLeave + std::to_string(W_STOPCODE(SIGTSTP))));
  ::kill(terminal.child, SIGCONT);
  EXPECT_TRUE(terminal.shows(kEnter));
  EXPECT_TRUE(terminal.shows(" end 00:00:29.000"));
  terminal.type("q");
  EXPECT_THAT(terminal.ended(), EndsWith(kLeave + "0"));
}

TEST(Terminal, IsGivenBackWhenASignalEndsTheProgram) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
    OnTerminal terminal(kPlay);
    EXPECT_TRUE(terminal.shows("playing 00:00:00."));
    ::kill(terminal.child, signal);
    EXPECT_THAT(terminal.ended(), EndsWith(kLeave + std::to_string(signal)));
  }
}

TEST(Terminal, NeverReceivesWhatStandsInASubtitleOrAName) {
  const TempFile movie("{1}{1}25\n{1}{2}{f:x}a\x1B[31mb\xC2\x9B\n", "x\x1By.sub");
  for (const char* command : {"play --no-interactive --speed 9", "export --log", "info", "probe",
                              "check --color never"}) {
    const std::string out = OnTerminal(std::string(command) + " '" + movie.path() + "'").ended();
    EXPECT_THAT(out,
                testing::AllOf(HasSubstr("␛"), testing::Not(HasSubstr("\x1B")), EndsWith("\n0")))
        << command;
  }
  EXPECT_THAT(runShell("/", "ombe export '" + movie.path() + "'").out,
              HasSubstr("a\x1B[31mb\xC2\x9B"));
}

TEST(Lines, ArePrintedAsSubtitlesBegin) {
  const std::string play = "unset COLORTERM; export TERM=; ombe " + kPlay + "--speed 1000 --start ";
  EXPECT_EQ(runShell("/", play + "20 && echo done").out,
            "00:00:20.400 --> 00:00:22.800  Green means | we are home.\n"
            "00:00:24.000 --> 00:00:26.000  {s:24}A code that is left as it is.\n"
            "00:00:27.000 --> 00:00:29.000  The end.\ndone\n");
  const char* options = "12 --offset -8500 --color always --no-interactive | head -1 | cut -c 32-";
  EXPECT_EQ(runShell("/", play + options).out,
            "\x1B[0;32mGreen means\x1B[0m | \x1B[0;32mwe are home.\x1B[0m\n");
}

}  // namespace
}  // namespace ombe_test
