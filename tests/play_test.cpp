// The player: what it makes of texts and keys, how it follows the clock, and what the program does
// to a terminal.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <csignal>
#include <sstream>

#include "host/play/controls.h"
#include "host/play/text_width.h"
#include "host/play/time_text.h"
#include "host/settings.h"
#include "host/visible_text.h"
#include "support/fakes.h"

namespace ombe_test {
namespace {

using namespace Ombe;  // NOLINT(google-build-using-namespace): the subject of every test here
using testing::HasSubstr;

/// "[bi#00ff00:text]" for a span, "/" between lines.
std::string describe(const std::vector<StyledLine>& lines) {
  std::string out;
  for (const StyledLine& line : lines) {
    if (&line != lines.data()) out += "/";
    for (const Span& span : line) {
      out.append("[").append(span.style.bold ? "b" : "").append(span.style.italic ? "i" : "");
      char colour[16] = "";
      if (span.style.colour) std::snprintf(colour, sizeof colour, "#%06x", *span.style.colour);
      out.append(colour).append(":").append(span.text).append("]");
    }
  }
  return out;
}

TEST(Markup, BecomesStylesAndNothingThatATerminalObeys) {
  const struct {
    const char* text;
    const char* expected;
  } cases[] = {
      {"", ""},
      {"a\nb\r\n\nc", "[:a]/[:b]//[:c]"},
      {"<b><i>T\nU</i>v</B>w", "[bi:T]/[bi:U][b:v][:w]"},
      {"<font color=\"#0000fF\">a<FONT COLOR=\"#FF0000\">b</font>c</font>d",
       "[#0000ff:a][#ff0000:b][#0000ff:c][:d]"},
      {"<font color=\"#+1-2zz\">a</font>", "[:a]"},
      {"<i><i>a</i>b</i></i>", "[i:ab][:</i>]"},
      {"<u>1 < 2</b> <font color=\"#0000ff<", "[:<u>1 < 2</b> <font color=\"#0000ff<]"},
      {"\x1B[2J\x07\x7F\r\tx", "[:␛[2J␇␡␍ x]"},
      {"\xC2\x9B\xC2\xA0\u202E\x9B\xE2\x80", "[:\\u009B\u00A0\\u202E\uFFFD\uFFFD]"},
  };
  for (const auto& c : cases) EXPECT_EQ(describe(parseMarkup(c.text)), c.expected) << c.text;
  EXPECT_EQ(visibleText(std::string("\0\n\t", 3)), "␀\n\t");
}

TEST(Width, CountsCellsAndBreaksBetweenWords) {
  EXPECT_EQ(cellCount("żółty e\u0301 日本 \U0001F600 \u200D"), 5 + 1 + 1 + 1 + 4 + 1 + 2 + 1);
  EXPECT_EQ(clipText("a日本", 4), "a日");
  const std::pair<const char*, const char*> cases[] = {
      {"12345 789012", "[:12345 789012]"},
      {"12345 789012 4", "[:12345 789012]/[:4]"},
      {"1 <i>2345</i>67890123 5", "[:1]/[i:2345][:67890123]/[:5]"},
      {"123456789012345 7", "[:123456789012]/[:345 7]"},
      {"日本日本日本日 本", "[:日本日本日本]/[:日 本]"},
  };
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(describe(wrapLine(parseMarkup(text)[0], 12)), expected);
  }
}

TEST(Colours, AreTheNearestThatTheTerminalHas) {
  const struct {
    const char* colorTerm;
    const char* term;
    const char* expected;
  } cases[] = {
      {"truecolor", "", ";38;2;0;204;100m"},
      {"", "xterm-direct", ";38;2;0;204;100m"},
      {"", "xterm-256color", ";38;5;41m"},
      {"", "linux", ";32m"},
  };
  for (const auto& c : cases) {
    std::string out;
    appendStyled(out, {{true, true, 0x00CC64}, "x"}, terminalColourDepth(c.colorTerm, c.term));
    EXPECT_EQ(out, std::string("\x1B[0;1;3") + c.expected + "x\x1B[0m");
  }
  std::string grey;
  appendStyled(grey, {{false, false, 0x808081}, "x"}, ColourDepth::k256);
  appendStyled(grey, {{true, false, 0x808081}, "y"}, ColourDepth::kNoColour);
  appendStyled(grey, {{true, false, 0x808081}, "z"}, ColourDepth::kNoStyle);
  EXPECT_EQ(grey, "\x1B[0;38;5;244mx\x1B[0m\x1B[0;3my\x1B[0mz");
}

TEST(Screen, StacksSubtitlesMessageAndStatusFromTheBottom) {
  const Frame frame{parseMarkup("ab\ncd"), "hint", "status too long"};
  const auto row = [](int number) { return "\x1B[" + std::to_string(number) + ";1H\x1B[K"; };
  const std::string status = "\x1B[7mstatus\x1B[0m";
  EXPECT_EQ(
      drawFrame(frame, {6, 6}, ColourDepth::kTrue),
      row(1) + row(2) + "  ab" + row(3) + "  cd" + row(4) + row(5) + "hint" + row(6) + status);
  EXPECT_EQ(drawFrame(frame, {2, 6}, ColourDepth::kTrue), row(1) + "hint" + row(2) + status);
}

TEST(Keys, AreUnderstoodHoweverTheirBytesArrive) {
  const std::string bytes = "q\x1B[A\x1BOB\x1B[1;5C\x1B[D\x1B[3~\r\x7F\x1B\x1Bx\xC5\xBC\x1B[15";
  constexpr auto kChar = Key::kCharacter;
  const std::vector<KeyPress> expected = {
      {kChar, 'q'},  {Key::kUp},        {Key::kDown},   {Key::kRight},  {Key::kLeft},
      {Key::kEnter}, {Key::kBackspace}, {Key::kEscape}, {Key::kEscape}, {kChar, 'x'}};
  KeyDecoder whole;
  EXPECT_TRUE(whole.decode(bytes) == expected);
  EXPECT_TRUE(whole.isWaiting());
  EXPECT_TRUE(whole.flush().empty()) << "a sequence that breaks off is no key";
  KeyDecoder single;
  std::vector<KeyPress> keys;
  for (const char byte : bytes) {
    for (const KeyPress& key : single.decode({&byte, 1})) keys.push_back(key);
  }
  EXPECT_TRUE(keys == expected);
  single.flush();
  single.decode("\x1B");
  EXPECT_TRUE(single.flush() == std::vector<KeyPress>{{Key::kEscape}});
  EXPECT_FALSE(single.isWaiting());
}

TEST(Time, IsReadAsPeopleTypeIt) {
  std::istringstream cases(
      "90=90000 1:30=90000 1:02:03.5=3723500 0:90,25=90250 1193:02:47.295=4294967295 "
      "1193:02:47.296=-1 =-1 :30=-1 1:=-1 1::2=-1 1:2:3:4=-1 1.=-1 1.2345=-1 -1=-1 1.x=-1 "
      "99999999999999999999=-1");
  std::string text;
  for (std::int64_t expected; std::getline(cases, text, '=') && cases >> expected; cases.ignore()) {
    const auto time = parseTime(text);
    EXPECT_EQ(time ? std::int64_t{*time} : -1, expected) << text;
  }
}

struct Playing : testing::Test {
  void open(const std::string& content, std::int32_t offset = 0) {
    movie.emplace(content);
    session.emplace(SessionOptions{.offsetMs = offset, .plugin = OMBE_PLUGIN});
    session->open(movie->path());
    player.emplace(*session);
  }
  /// Position, what shows, where the next begins.
  [[nodiscard]] std::string state() const {
    std::string out = std::to_string(player->position());
    for (const Caption* caption : player->showing()) out += " " + caption->text;
    const auto next = player->nextTime();
    return out + (next ? " >" + std::to_string(*next) : "") + (player->isAtEnd() ? " end" : "");
  }
  std::string after(std::int64_t milliseconds) {
    player->advance(std::chrono::milliseconds(milliseconds));
    return state();
  }
  std::string at(std::int64_t milliseconds) {
    player->seek(milliseconds);
    return state();
  }

  std::optional<TempFile> movie;
  std::optional<Session> session;
  std::optional<Player> player;
};

// a 1000-3000, b 2000-2400, c without length, d ending before it starts, e 10000-12000
constexpr char kMovie[] = "{1}{1}25\n{25}{75}a\n{50}{60}b\n{100}{100}c\n{200}{150}d\n{250}{300}e\n";

TEST_F(Playing, FollowsTheClockInBothDirections) {
  open(kMovie);
  EXPECT_EQ(after(999), "999 >1000");
  EXPECT_EQ(after(1), "1000 a >2000");
  EXPECT_EQ(after(1000), "2000 a b >4000");
  EXPECT_EQ(after(400), "2400 a >4000");
  EXPECT_EQ(after(600), "3000 >4000");
  player->setSpeed(2500);
  EXPECT_EQ(after(798), "4995 c >8000");
  EXPECT_EQ(after(1600), "8995 d >10000");
  player->setPaused(true);
  EXPECT_EQ(after(5000), "8995 d >10000");
  EXPECT_EQ(at(11999), "11999 e") << "a seek shows at once, paused or not";
  player->setPaused(false);
  EXPECT_EQ(after(5000), "12000 end") << "playing stops with the last subtitle";
  EXPECT_EQ(after(5000), "12000 end");
  player->setSpeed(-1000);
  EXPECT_EQ(state(), "12000 >10000");
  EXPECT_EQ(after(1), "11999 e >8000");
  EXPECT_EQ(after(9500), "2499 a >2000") << "a long one is met before the short one within it";
  EXPECT_EQ(after(100), "2399 a b");
  EXPECT_EQ(at(2000), "2000 a b");
  EXPECT_EQ(after(9999), "0 end");
  player->setSpeed(1000);
  EXPECT_EQ(at(-1), "0 >1000");
  EXPECT_EQ(at(5000000000), "4294967295 end");
}

TEST_F(Playing, FollowsChangesOfRateAndOffset) {
  open(kMovie);
  EXPECT_EQ(at(2000), "2000 a b >4000");
  session->controller().setValue(frameRateSetting(), SettingValue::ratio({50, 1}));
  player->refresh();
  EXPECT_EQ(state(), "2000 c >4000");
  player->setOffset(-1900);
  EXPECT_EQ(at(0), "0 >100") << "what ended before the beginning is gone, what is left is early";
  EXPECT_EQ(at(2100), "2100 d >3100");
  player->setSpeed(-1000);
  EXPECT_EQ(at(3200), "3200 e >2100");
  player->setSpeed(1000);
  player->setOffset(1000);
  EXPECT_EQ(at(1500), "1500 a >2000");
  session->controller().setValue(frameRateSetting(), SettingValue::ratio({0, 1}));
  player->refresh();
  EXPECT_EQ(at(2000), "2000 a >3000");
}

TEST_F(Playing, CopesWithNothingToPlayAndWithTheLargestTimes) {
  open("{1}{1}25\n");
  EXPECT_EQ(state(), "0 end");
  player->setSpeed(-1000);
  EXPECT_EQ(at(10), "10");
  open("{1}{1}25\n{53687091}{53687116}late\n{60000000}{60000025}later\n");
  EXPECT_EQ(at(2147483646), "2147483646 late >2400000000");
  EXPECT_EQ(at(2400000500), "2400000500 later");
  EXPECT_EQ(after(9999), "2400001000 end");
  open("{1}{1}25\n{25}{75}a\n", -2000);
  EXPECT_EQ(state(), "0 a");
}

TEST_F(Playing, IsControlledByKeys) {
  open("{1}{1}25\n{25}{3000}m\xF3j \xBF\xF3\xB3ty\n");
  Tuning tuning(session->controller(), {"IBM852"});
  Controls controls(*player, tuning);
  const struct {
    const char* keys;
    const char* status;
    const char* message;
  } cases[] = {
      {" ", " paused 00:00:00.000  1x  next 00:00:01.000  file's rate  no code page", ""},
      {"g1:3x\x7F"
       "5\r",
       " 00:01:35.000  ", "not UTF-8: c tries IBM852"},
      {"\x1B[A\x1B[D", " end 00:02:30.000  ", ""},
      {"\x1B[B\x1B[C", " paused 00:01:35.000  ", ""},
      {"gx\r", " 00:01:35.000  ", "'x' is no time"},
      {"g7\x1B\x1B[C", " 00:01:40.000  ", ""},
      {"]]", "  1.5x  ", ""},
      {"[[[[[[[[", "  0.25x  ", ""},
      {"r]", "  -0.5x  ", ""},
      {"]]r", "  1x  ", ""},
      {"f", "  23.976 fps  ", ""},
      {"FF", "  30 fps  ", ""},
      {"f\x1B[B\x1B[B", " 00:00:00.000  1x  next 00:00:00.998  file's rate  ", ""},
      {"oo", "next 00:00:00.798  file's rate  no code page  -200 ms", ""},
      {"OOO", "next 00:00:01.098  file's rate  no code page  +100 ms", ""},
      {"g9\rc", "  IBM852  ", ""},
      {"c", "  windows-1250  ", ""},
      {"?", "", "q quit"},
  };
  KeyDecoder keys;
  for (const auto& c : cases) {
    for (const KeyPress& press : keys.decode(c.keys)) controls.press(press);
    EXPECT_THAT(controls.frame().status, HasSubstr(c.status)) << c.keys;
    EXPECT_THAT(controls.frame().message, HasSubstr(c.message)) << c.keys;
  }
  EXPECT_EQ(describe(controls.frame().captions), "[:mój żółty]");
  session->host().setValue(autodetectedSetting(), SettingValue::boolean(true));
  controls.press({Key::kCharacter, 'c'});
  EXPECT_THAT(controls.frame().message, HasSubstr("signature"));
  controls.press({Key::kCharacter, 'q'});
  EXPECT_TRUE(controls.wantsToQuit());
}

/// The built program on a terminal of its own.
class OnTerminal {
 public:
  explicit OnTerminal(const std::vector<std::string>& arguments) {
    const winsize size{24, 100, 0, 0};
    EXPECT_EQ(::openpty(&master_, &slave_, nullptr, nullptr, &size), 0);
    before_ = settings();
    child_ = ::fork();
    if (child_ == 0) run(arguments);
  }
  OnTerminal(const OnTerminal&) = delete;
  OnTerminal& operator=(const OnTerminal&) = delete;
  ~OnTerminal() {
    if (child_ > 0) {
      ::kill(child_, SIGKILL);
      ::waitpid(child_, nullptr, 0);
    }
    ::close(master_);
    ::close(slave_);
  }

  void type(std::string_view keys) const {
    EXPECT_EQ(::write(master_, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
  }
  void signal(int number) const { ::kill(child_, number); }
  void resize(unsigned short rows) const {
    const winsize size{rows, 100, 0, 0};
    ::ioctl(master_, TIOCSWINSZ, &size);
    signal(SIGWINCH);
  }
  /// Waits for `text` on the terminal, behind what was waited for before.
  [[nodiscard]] bool shows(std::string_view text) {
    while (output_.find(text) == std::string::npos) {
      if (!read(60000)) return false;
    }
    output_.erase(0, output_.find(text) + text.size());
    return true;
  }
  /// Waits until it has ended or stopped; what is left of the output.
  std::string ended(int& status) {
    ::waitpid(child_, &status, WUNTRACED);
    if (!WIFSTOPPED(status)) child_ = -1;
    while (read(0)) {
    }
    return std::exchange(output_, {});
  }
  [[nodiscard]] bool isRaw() const { return settings() != before_; }

 private:
  [[noreturn]] void run(const std::vector<std::string>& arguments) const {
    ::setpgid(0, 0);
    for (int descriptor : {0, 1, 2}) ::dup2(slave_, descriptor);
    ::setenv("TERM", "xterm-256color", 1);
    ::setenv("COLORTERM", "truecolor", 1);
    ::unsetenv("NO_COLOR");
    std::vector<char*> pointers;
    for (const std::string& argument : arguments) {
      pointers.push_back(const_cast<char*>(argument.c_str()));
    }
    pointers.push_back(nullptr);
    ::execv(OMBE_BINARY, pointers.data());
    ::_exit(127);
  }
  [[nodiscard]] bool read(int milliseconds) {
    pollfd source{master_, POLLIN, 0};
    char bytes[4096];
    if (::poll(&source, 1, milliseconds) <= 0) return false;
    const ssize_t count = ::read(master_, bytes, sizeof bytes);
    if (count > 0) output_.append(bytes, static_cast<std::size_t>(count));
    return count > 0;
  }
  [[nodiscard]] std::vector<unsigned> settings() const {
    termios now{};
    EXPECT_EQ(::tcgetattr(slave_, &now), 0);
    std::vector<unsigned> all = {now.c_iflag, now.c_oflag, now.c_cflag, now.c_lflag};
    all.insert(all.end(), std::begin(now.c_cc), std::end(now.c_cc));
    return all;
  }

  int master_ = -1;
  int slave_ = -1;  // held open, so that the settings can be asked for after the end
  pid_t child_ = -1;
  std::vector<unsigned> before_;
  std::string output_;
};

constexpr char kStyled[] = OMBE_SAMPLES_DIR "/styled.sub";
constexpr char kEnter[] = "\x1B[?1049h";
constexpr char kLeave[] = "\x1B[?7h\x1B[?25h\x1B[?1049l";

TEST(Terminal, ShowsWhatIsPlayedAndIsGivenBack) {
  OnTerminal terminal({"ombe", "play", kStyled, "--start", "0:01"});
  EXPECT_TRUE(terminal.shows(kEnter));
  EXPECT_TRUE(terminal.shows("\x1B[0;3mThe lighthouse"));
  EXPECT_TRUE(terminal.isRaw());
  terminal.type(" g12\r");
  EXPECT_TRUE(terminal.shows(";38;2;51;153;255mThe sea was blue"));
  terminal.resize(30);
  EXPECT_TRUE(terminal.shows("\x1B[30;1H\x1B[K\x1B[7m paused 00:00:12.000"));
  terminal.type("\x1B");
  terminal.type("[Cg28\r ");
  EXPECT_TRUE(terminal.shows(" end 00:00:29.000"));
  terminal.signal(SIGTSTP);
  int status = 0;
  EXPECT_THAT(terminal.ended(status), testing::EndsWith(kLeave));
  EXPECT_TRUE(WIFSTOPPED(status));
  EXPECT_FALSE(terminal.isRaw());
  terminal.signal(SIGCONT);
  EXPECT_TRUE(terminal.shows(kEnter));
  EXPECT_TRUE(terminal.shows(" end 00:00:29.000"));
  EXPECT_TRUE(terminal.isRaw());
  terminal.type("q");
  EXPECT_THAT(terminal.ended(status), testing::EndsWith(kLeave));
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
  EXPECT_FALSE(terminal.isRaw());
}

TEST(Terminal, IsGivenBackWhenASignalEndsTheProgram) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
    OnTerminal terminal({"ombe", "play", kStyled});
    EXPECT_TRUE(terminal.shows("playing 00:00:00."));
    terminal.signal(signal);
    int status = 0;
    EXPECT_THAT(terminal.ended(status), testing::EndsWith(kLeave));
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << status;
    EXPECT_FALSE(terminal.isRaw());
  }
}

TEST(Terminal, NeverReceivesWhatStandsInASubtitleOrAName) {
  const TempFile movie("{1}{1}25\n{1}{2}a\x1B[31mb\xC2\x9B\n", "x\x1By.sub");
  for (const std::string command : {"play", "export", "info", "probe"}) {
    std::vector<std::string> arguments = {"ombe", command, movie.path()};
    if (command == "play") arguments.insert(arguments.end(), {"--no-interactive", "--speed", "9"});
    OnTerminal terminal(arguments);
    int status = 0;
    const std::string out = terminal.ended(status);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << out;
    EXPECT_THAT(out, HasSubstr("␛")) << command;
    EXPECT_THAT(out, testing::Not(HasSubstr("\x1B"))) << command;
  }
}

TEST(Lines, ArePrintedAsSubtitlesBegin) {
  const std::pair<const char*, const char*> cases[] = {
      {"--start 20",
       "00:00:20.400 --> 00:00:22.800  Green means | we are home.\n"
       "00:00:24.000 --> 00:00:26.000  {s:24}A code that is left as it is.\n"
       "00:00:27.000 --> 00:00:29.000  The end.\n"},
      {"--start 28", "00:00:27.000 --> 00:00:29.000  The end.\n"},
      {"--start 12 --offset -8500 --color always --no-interactive | head -1 | cut -c 32-",
       "\x1B[0;32mGreen means\x1B[0m | \x1B[0;32mwe are home.\x1B[0m\n"},
  };
  for (const auto& [arguments, expected] : cases) {
    const std::string command = std::string("unset COLORTERM; TERM= '" OMBE_BINARY "' play '") +
                                kStyled + "' --speed 1000 " + arguments;
    FILE* pipe = ::popen(command.c_str(), "r");
    char out[4096];
    const std::size_t count = std::fread(out, 1, sizeof out, pipe);
    EXPECT_EQ(::pclose(pipe), 0);
    EXPECT_EQ(std::string(out, count), expected) << arguments;
  }
}

}  // namespace
}  // namespace ombe_test
