// The player: texts, keys and the clock, and what the program does to a terminal.
#include <gmock/gmock.h>
#include <poll.h>
#include <pty.h>
#include <unistd.h>

#include <csignal>
#include <thread>

#include "host/play/controls.h"
#include "host/play/text_width.h"
#include "host/text/number_text.h"
#include "host/text/visible_text.h"
#include "ombe_core/subtitle_settings.h"
#include "support/paths.h"
#include "support/run_program.h"
#include "support/table.h"

namespace ombe_test {
namespace {

using namespace Ombe;  // NOLINT(google-build-using-namespace): the subject of every test here
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;
using Texts = std::pair<const char*, const char*>;

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
      session.emplace(SessionOptions{.plugin = kPlugin}).open(film.emplace(row[1]).path());
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
  Session session({.plugin = kPlugin});
  session.open(movie.path());
  Player player(session);
  Tuning tuning(session.controller(), {"IBM852"}, {"25 fps (stated)", 25});
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
  EXPECT_EQ(Tuning(session.controller(), {}, {}).frameRateName(), "12 fps");
  type("\x1B[15");
  EXPECT_TRUE(decoder.isWaiting());
  EXPECT_TRUE(decoder.flush().empty()) << "a sequence that breaks off is no key";
  EXPECT_FALSE(decoder.isWaiting());

  const std::string full(65535, 'y');
  const TempFile crowd("{1}{99}x\n{1}{99}" + full + "żz\n");
  Session other({.plugin = kPlugin});
  other.open(crowd.path());
  Player watched(other, 50);
  EXPECT_EQ(describe(Controls(watched, tuning, ColorOrder::kRgb).frame().captions),
            "[:" + full + "]");
}

/// The built program on a terminal of its own.
struct OnTerminal {
  explicit OnTerminal(const std::string& environment, const std::string& arguments) {
    winsize size{24, 80, 0, 0};
    EXPECT_EQ(::openpty(&master, &slave, nullptr, nullptr, &size), 0);
    before = stty("-g");
    child = ::fork();
    if (child != 0) return;
    ::setpgid(0, 0);
    ::alarm(60);  // ends what does not end by itself
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) ::signal(signal, SIG_DFL);
    for (const int descriptor : {0, 1, 2}) ::dup2(slave, descriptor);
    ::close(master);
    const std::string command = std::string("cd '") + kSamples +
                                "'; exec env -u NO_COLOR -u COLORTERM " + environment + " '" +
                                kProgram + "' " + arguments;
    ::execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
    ::_exit(127);
  }
  [[nodiscard]] std::string stty(const std::string& arguments) const {
    return runShell("/", std::string("stty -F ") + ::ttyname(slave) + " " + arguments).out;
  }
  void type(const std::string& keys) const { ::dprintf(master, "%s", keys.c_str()); }
  /// Waits for `text` on a terminal that is taken over, behind what was waited for before, which is
  /// then in `passed`.
  bool shows(std::string_view text, int patience = 60000) {
    char bytes[4096];
    for (pollfd source{master, POLLIN, 0}; output.find(text) == std::string::npos;) {
      if (::poll(&source, 1, patience) <= 0) return false;
      output.append(bytes, static_cast<std::size_t>(::read(master, bytes, sizeof bytes)));
    }
    passed = output.substr(0, output.find(text));
    output.erase(0, passed.size() + text.size());
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
  std::string before, output, passed;
};

TEST(Terminal, ShowsWhatIsPlayedAndIsGivenBack) {
  const TempFile hostile("{1}{1}25\n{1}{2}a\x1B[31mb\xC2\x9B\n");
  ::setenv("HOSTILE", hostile.path().c_str(), 1);
  ::setenv("MPL2", kMpl2Plugin, 1);
  std::optional<OnTerminal> terminal;
  for (const auto& row : readTable("terminal.txt")) {
    SCOPED_TRACE(row[0] + " " + row[1]);
    if (row[0] == "run") terminal.emplace(row[1], row.at(2));
    if (row[0] == "type") terminal->type(row[1]);
    if (row[0] == "stty") {
      EXPECT_EQ(terminal->stty(row[1]), "");
    }
    if (row[0] == "kill") ::kill(terminal->child, std::stoi(row[1]));
    if (row[0] == "shows") {
      EXPECT_TRUE(terminal->shows(row[1]));
    }
    if (row[0] == "ended") {
      EXPECT_THAT(terminal->ended(), EndsWith(row[1]));
    }
  }
}

TEST(Terminal, SeesNoTimePassWhileTheProgramIsStopped) {
  using Clock = std::chrono::steady_clock;
  const auto start = Clock::now();
  OnTerminal terminal("TERM=xterm", "play styled.sub");
  EXPECT_TRUE(terminal.shows("playing "));
  ::kill(terminal.child, SIGTSTP);
  terminal.ended();
  const auto stop = Clock::now();
  std::this_thread::sleep_for(std::chrono::seconds(1));
  const auto running = [&start, pause = Clock::now() - stop] {
    return Clock::now() - start - pause;
  };
  ::kill(terminal.child, SIGCONT);
  terminal.type(" ");
  EXPECT_TRUE(terminal.shows("paused ") && terminal.shows("  1x"));
  EXPECT_LE(std::chrono::milliseconds(parseTime(terminal.passed).value_or(1000000)), running());
  terminal.type("q");
  EXPECT_THAT(terminal.ended(), EndsWith("0"));
}

/// Of JSON lines, with blanks between.
std::string startsOf(const std::string& lines) {
  constexpr std::string_view kName = "\"timestamp\": ";
  std::string starts;
  for (std::size_t at = 0; (at = lines.find(kName, at)) != std::string::npos;) {
    at += kName.size();
    starts += (starts.empty() ? "" : " ") + lines.substr(at, lines.find(',', at) - at);
  }
  return starts;
}

TEST(Terminal, ShowsHowToExportWhatWasFound) {
  const std::string name = "it's \x1B.sub";
  ::setenv("MPL2", kMpl2Plugin, 1);
  for (auto& row : readNamedTable("marks.txt")) {
    SCOPED_TRACE(row["film"] + " " + row["options"] + row["keys"]);
    const TempFile film(row["film"], name);
    const std::string folder = film.path().substr(0, film.path().size() - name.size());
    ::setenv("FILM", film.path().c_str(), 1);
    OnTerminal terminal("TERM=xterm", "play \"$FILM\" " + row["options"]);
    EXPECT_TRUE(terminal.shows("\x1B[?1049h"));
    terminal.type(row["keys"] + "q");
    std::string line = terminal.ended();
    line.erase(0, line.rfind("\x1B[?1049l") + 8);
    line.erase(line.size() - 1);
    EXPECT_EQ(line.empty(), row["starts"].empty()) << line;
    if (line.empty()) continue;
    EXPECT_THAT(line, StartsWith("ombe export $'" + folder + "it\\'s \\033.sub' "));
    if (const auto at = row["line"].find("$MPL2"); at != std::string::npos)
      row["line"].replace(at, 5, kMpl2Plugin);
    EXPECT_THAT(line, EndsWith(row["line"] + "\r\n"));
    const std::string command = line.substr(0, line.size() - 2) + " -f jsonl";
    std::ofstream(folder + "command") << command;
    const auto [code, out, err] = runShell(
        folder, std::string("bash -c 'ombe() { \"") + kProgram + "\" \"$@\"; }; . ./command'");
    EXPECT_EQ(startsOf(out), row["starts"]) << command << err;
  }
}

TEST(Lines, ArePrintedOnceWhenSubtitlesBegin) {
  const Texts cases[] = {
      {"--start 20 && echo done",
       "00:00:20.400 --> 00:00:22.800  Green means | we are home.\n"
       "00:00:24.000 --> 00:00:26.000  {s:24}A code that is left as it is.\n"
       "00:00:27.000 --> 00:00:29.000  The end.\ndone\n"},
      {"--offset -1000 | head -2 | tail -1",
       "00:00:03.000 --> 00:00:05.000  Can you see the boat?\n"},
      {"--start 12 --offset -8500 --color always --no-interactive | head -1 | cut -c 32-",
       "\x1B[0;32mGreen means\x1B[0m | \x1B[0;32mwe are home.\x1B[0m\n"},
      {"--start 14 --color always --color-order bgr | head -1 | cut -c 32-71",
       "\x1B[0;33mThe sea was blue that day,\x1B[0m | \n"}};
  const std::string play = "unset COLORTERM; TERM= ombe play styled.sub --speed 1000 ";
  for (const auto& [options, out] : cases) {
    EXPECT_EQ(runShell(kSamples, play + options).out, out);
  }
}

}  // namespace
}  // namespace ombe_test
