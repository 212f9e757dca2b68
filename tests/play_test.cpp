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

namespace ombe_test {
namespace {

using namespace Ombe;  // NOLINT(google-build-using-namespace): the subject of every test here
using testing::EndsWith;
using testing::HasSubstr;
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

TEST(Markup, BecomesStylesAndNothingThatATerminalObeys) {
  const Texts cases[] = {
      {"a\nb\r\n\n<b><i>T\nU</i>v</B>w", "[:a]/[:b]//[bi:T]/[bi:U][b:v][:w]"},
      {"<font color=\"#0000fF\">a<FONT COLOR=\"#FF0000\">b</font>c</font>d",
       "[#0000ff:a][#ff0000:b][#0000ff:c][:d]"},
      {"<font color=\"#+1-2zz\">a</font><i><i>b</i>c</i></i>", "[:a][i:bc][:</i>]"},
      {"<u>1 < 2</b> <font color=\"#0000ff<", "[:<u>1 < 2</b> <font color=\"#0000ff<]"},
      {"\x1B[2J\x07\x7F\r\tx\xC2\x9B\xC2\xA0\u202E\x9B\xE2\x80",
       "[:␛[2J␇␡␍ x\\u009B\u00A0\\u202E\uFFFD\uFFFD]"}};
  for (const auto& [text, expected] : cases) EXPECT_EQ(describe(parseMarkup(text)), expected);
  EXPECT_EQ(visibleText(std::string("\0\n\t", 3)), "␀\n\t");
}

TEST(Width, CountsCellsAndBreaksBetweenWords) {
  EXPECT_EQ(cellCount("żółty e\u0301 日本 \U0001F600 \u200D"), 5 + 1 + 1 + 1 + 4 + 1 + 2 + 1);
  EXPECT_EQ(clipText("a日本", 4), "a日");
  const Texts cases[] = {{"12345 789012", "[:12345 789012]"},
                         {"12345 789012 4", "[:12345 789012]/[:4]"},
                         {"1 <i>2345</i>67890123 5", "[:1]/[i:2345][:67890123]/[:5]"},
                         {"123456789012345 7", "[:123456789012]/[:345 7]"},
                         {"日本日本日本日 本", "[:日本日本日本]/[:日 本]"}};
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(describe(wrapLine(parseMarkup(text)[0], 12)), expected);
  }
}

TEST(Colours, AreTheNearestThatTheTerminalHas) {
  std::string out;
  for (const ColorDepth depth :
       {terminalColorDepth("", "xterm-direct"), terminalColorDepth("", "xterm-256color"),
        terminalColorDepth("", "linux"), ColorDepth::kNoColor, ColorDepth::kNoStyle}) {
    appendStyled(out, {{true, false, 0x00CC64}, "x"}, depth);
  }
  appendStyled(out, {{false, false, 0x808081}, "y"}, ColorDepth::k256);
  EXPECT_EQ(out,
            "\x1B[0;3;38;2;0;204;100mx\x1B[0m\x1B[0;3;38;5;41mx\x1B[0m\x1B[0;3;32mx\x1B[0m"
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
                           "-1", "1.x", "99999999999999999999"}) {
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
  // a 1000-3000, b 2000-2400, c without length, d ending before it starts, e 10000-12000
  constexpr char kMovie[] =
      "{1}{1}25\n{25}{75}a\n{50}{60}b\n{100}{100}c\n{200}{150}d\n{250}{300}e\n";
  // +: time passes, @: seeks, x: speed, p: pauses or not, r: sets the frame rate, o: the offset
  const Texts cases[] = {
      {"+999: 999 >1000; +1: 1000 a >2000; +1000: 2000 a b >4000; +400: 2400 a >4000;"
       "+600: 3000 >4000; x2500: 3000 >4000; +798: 4995 c >8000; +1600: 8995 d >10000;"
       "p1: 8995 d >10000; +5000: 8995 d >10000; @11999: 11999 e; p0: 11999 e; +5000: 12000 end;"
       // The long one is met before the short one within it.
       "+5000: 12000 end; x-1000: 12000 >10000; +1: 11999 e >8000; +9500: 2499 a >2000;"
       "+100: 2399 a b; @2000: 2000 a b; +9999: 0 end; x1000: 0 >1000; @-1: 0 >1000;"
       "@5000000000: 4294967295 end",
       kMovie},
      // What ended before the beginning is gone, what is left is early.
      {"@2000: 2000 a b >4000; o-2000: 2000 c >6000; @0: 0 a b >2000; r50: 0 c >2000;"
       "o-1900: 0 >100; @2100: 2100 d >3100; x-1000: 2100 d >100; @3200: 3200 e >2100;"
       "x1000: 3200 e; o1000: 3200 c >5000; @1500: 1500 a >2000; r0: 1500 >2000; @2000: 2000 a "
       ">3000",
       kMovie},
      {"+0: 0 end; x-1000: 0 end; @10: 10", "{1}{1}25\n"},
      {"@2147483646: 2147483646 late >2400000000; @2400000500: 2400000500 later;"
       "+9999: 2400001000 end",
       "{1}{1}25\n{53687091}{53687116}late\n{60000000}{60000025}later\n"}};
  for (const auto& [steps, content] : cases) {
    const TempFile movie(content);
    Session session({.plugin = OMBE_PLUGIN});
    session.open(movie.path());
    Player player(session);
    std::istringstream in(steps);
    std::int64_t amount = 0;
    std::string state;
    for (char op = 0; std::getline(in >> op >> amount, state, ';');) {
      if (op == '+') player.advance(std::chrono::milliseconds(amount));
      if (op == '@') player.seek(amount);
      if (op == 'x') player.setSpeed(static_cast<int>(amount));
      if (op == 'p') player.setPaused(amount != 0);
      if (op == 'o') player.setOffset(static_cast<int>(amount));
      if (op == 'r') {
        const Ratio rate{static_cast<unsigned>(amount), 1};
        session.controller().setValue(frameRateSetting(), SettingValue::ratio(rate));
        player.refresh();
      }
      EXPECT_EQ(": " + stateOf(player), state) << op << amount;
    }
    EXPECT_TRUE(in.eof());
  }
}

TEST(Playing, IsControlledByKeys) {
  const TempFile movie("{1}{1}25\n{25}{3000}m\xF3j \xBF\xF3\xB3ty\n");
  Session session({.plugin = OMBE_PLUGIN});
  session.open(movie.path());
  Player player(session);
  Tuning tuning(session.controller(), {"IBM852"});
  Controls controls(player, tuning, ColorOrder::kBgr);
  const std::array<const char*, 3> cases[] = {
      {" ", " paused 00:00:00.000  1x  next 00:00:01.000  file's rate  no code page", ""},
      {"g1:3x\xC5\xBC\177\x1B[3~5\r", " 00:01:35.000  ", "not UTF-8: c tries IBM852"},
      {"\x1B[A\x1B[D", " end 00:02:30.000  ", ""},
      {"\x1BOB\x1B[1;5C", " paused 00:01:35.000  ", ""},
      {"gx\r", " 00:01:35.000  ", "'x' is no time"},
      {"g7\x1B\x1B[C]]", " 00:01:40.000  1.5x  ", ""},
      {"[[[[[[[[r]", "  -0.5x  ", ""},
      {"]]rfFF", "  1x  next none  30 fps  ", ""},
      {"f\x1B[B\x1B[B", " 00:00:00.000  1x  next 00:00:00.998  file's rate  ", ""},
      {"ooOOO", "next 00:00:01.098  file's rate  no code page  +100 ms", ""},
      {"g9\rcc", "  windows-1250  ", ""},
      {"?", "", "q quit"}};
  KeyDecoder decoder;
  for (const auto& [keys, status, message] : cases) {
    for (const char byte : std::string_view(keys)) {
      for (const KeyPress& press : decoder.decode({&byte, 1})) controls.press(press);
    }
    EXPECT_THAT(controls.frame().status, HasSubstr(status)) << keys;
    EXPECT_THAT(controls.frame().message, HasSubstr(message)) << keys;
  }
  EXPECT_EQ(controls.frame().captions, parseMarkup("mój żółty"));
  session.host().setValue(autodetectedSetting(), SettingValue::boolean(true));
  controls.press({Key::kCharacter, 'c'});
  EXPECT_THAT(controls.frame().message, HasSubstr("signature"));
  decoder.decode("\x1B[15");
  EXPECT_TRUE(decoder.isWaiting());
  EXPECT_TRUE(decoder.flush().empty()) << "a sequence that breaks off is no key";
  decoder.decode("\x1B");
  EXPECT_TRUE(decoder.flush() == std::vector<KeyPress>{{Key::kEscape}});
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
