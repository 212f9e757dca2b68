// Files and converter libraries that fail the built plug-in.
#include <dlfcn.h>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <utility>

#include "ombe_core/file.h"
#include "support/fakes.h"
#include "support/paths.h"

/// What the system is made to say instead of the truth.
struct Pretence {
  std::optional<off_t> size;
  std::optional<ssize_t> got;
  std::optional<void*> library;
  int uses = 0;
};
static Pretence lie;

template <typename Result, typename... Arguments>
static Result say(const std::optional<Result>& lied, const char* name, Arguments... arguments) {
  if (lied) return ++lie.uses, *lied;
  return reinterpret_cast<Result (*)(Arguments...)>(::dlsym(RTLD_NEXT, name))(arguments...);
}

extern "C" {
#define OMBE_INSTEAD_OF(name) __asm__(name) __attribute__((visibility("default")))
ssize_t sayRead(int file, void* to, std::size_t count) OMBE_INSTEAD_OF("read");
off_t saySought(int file, off_t offset, int whence) OMBE_INSTEAD_OF("lseek64");
void* sayLoaded(const char* file, int mode) OMBE_INSTEAD_OF("dlopen");

ssize_t sayRead(int file, void* to, std::size_t n) { return say(lie.got, "read", file, to, n); }
off_t saySought(int file, off_t at, int by) { return say(lie.size, "lseek64", file, at, by); }
void* sayLoaded(const char* file, int mode) { return say(lie.library, "dlopen", file, mode); }
}

namespace ombe_test {
namespace {

using testing::ElementsAreArray;

std::ptrdiff_t openDescriptors() {
  const std::filesystem::directory_iterator all("/proc/self/fd");
  return std::distance(begin(all), end(all));
}

struct Failure {
  std::string path;
  std::vector<std::string> probing, opening;  // records
  std::optional<off_t> size = std::nullopt;
  std::optional<ssize_t> got = std::nullopt;
  bool isRecognised = false;
};

void expectFailure(const Failure& failure) {
  Engine engine;
  LogCapture log;
  const std::ptrdiff_t before = openDescriptors();
  lie = {failure.size, failure.got, {}};
  EXPECT_EQ(engine.probe("file://" + failure.path), failure.isRecognised) << failure.path;
  EXPECT_THAT(log.take(), ElementsAreArray(failure.probing));
  EXPECT_EQ(engine.open("file://" + failure.path), Ombe::kGeneralFailure) << failure.path;
  EXPECT_THAT(log.take(), ElementsAreArray(failure.opening));
  EXPECT_EQ(std::exchange(lie, {}).uses > 0, failure.size || failure.got);
  const std::string stored = engine.host.settings.text("CodePage", "Autodetected");
  EXPECT_TRUE(failure.isRecognised || failure.opening.empty() || stored == "none") << stored;
  EXPECT_EQ(openDescriptors(), before) << failure.path;
}

std::string record(const std::string& text) { return "Utilities readFile:" + text + "\n"; }

std::string notOpened(const std::string& path) { return record("284 Failed to open file " + path); }

std::string tried(int count, int got) {
  return record("309 Tried to read " + std::to_string(count) + " bytes, got " +
                std::to_string(got));
}

std::string unallocated(std::int64_t count) {
  return record("298 Couldn't allocate " + std::to_string(count) + " bytes");
}

TEST(File, ThatCannotBeReadIsRefusedLoggedAndClosed) {
  const std::string content = "{1}{2}ab";
  entryPoint();
  const bool isRoot = ::geteuid() == 0;  // to whom nothing is forbidden
  const bool isRefusable = !isRoot || ::seteuid(65534) == 0;
  const TempFile file(content), locked(content), empty(""), huge(content), odd(content, "\xFF.sub");
  std::filesystem::resize_file(huge.path(), 0x100000000);
  const std::string missing = file.path() + ".sub", folder = file.path() + ".txt";
  const std::string fifo = empty.path() + ".sub";
  std::filesystem::create_directory(folder);
  std::filesystem::permissions(locked.path(), std::filesystem::perms::none);
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
  const int writer = ::open(fifo.c_str(), O_RDWR);
  ASSERT_EQ(::write(writer, content.data(), 8), 8);
  const Failure failures[] = {
      {missing, {notOpened(missing), notOpened(missing)}, {notOpened(missing)}},
      {folder, {tried(1024, -1), tried(4096, -1)}, {tried(4096, -1)}, 4096},
      {odd.path(), {}, {}},
      {empty.path(), {tried(1024, 0)}, {}},
      {file.path(), {tried(1024, 8), tried(9, 8)}, {tried(9, 8)}, 9},
      {file.path(), {tried(1024, 3), tried(8, 3)}, {tried(8, 3)}, {}, 3},
      {file.path(), {tried(1024, -1), tried(8, -1)}, {tried(8, -1)}, {}, -1},
      {fifo, {tried(1024, 8), unallocated(0)}, {unallocated(0)}},
      {file.path(), {tried(1024, 8), unallocated(0)}, {unallocated(0)}, 0xFFFFFFFF},
      {huge.path(), {}, {unallocated(0x100000001)}, {}, {}, true},
      {huge.path(), {}, {unallocated(INT64_MAX)}, INT64_MAX, {}, true},
  };
  for (const Failure& failure : failures) expectFailure(failure);
  const std::string refused = notOpened(locked.path());
  if (isRefusable) expectFailure({locked.path(), {refused, refused}, {refused}});
  ::close(writer);
  ASSERT_TRUE(!isRoot || ::seteuid(0) == 0);
  if (!isRefusable) GTEST_SKIP() << "the forbidden file: root, who may read it, stayed root";
}

TEST(File, ThatIsOpenedAgainClosesWhatWasOpen) {
  const std::ptrdiff_t before = openDescriptors();
  Ombe::File file;
  for (const wchar_t* path : {L"/", L"/dev/null"}) {
    EXPECT_EQ(file.open(path, Ombe::FileOpenMode::kRead), 0);
  }
  EXPECT_EQ(file.open(L"/", static_cast<Ombe::FileOpenMode>(1)), EINVAL);
  EXPECT_EQ(openDescriptors(), before);
}

/// Plays a text, in a process that has bound no converter library yet, with one that lacks a
/// function.
void readWithStub(const std::string& missing) {
  const std::string file = std::string(kConverterStubs) + "/without_" + missing + ".so";
  void* const stub = ::dlopen(file.c_str(), RTLD_NOW);
  ASSERT_NE(stub, nullptr) << ::dlerror();
  Engine engine;
  engine.clock.now = 9999;
  Ombe::StreamInterface* stream = engine.play("{1}{1}1000\n{1000}{3000}abcd");
  constexpr std::pair<const char*, const char*> kPages[] = {
      {"any", "ABCD"}, {"none", "abcd"}, {"unsound", "abcd"}, {"in0", "abcd"},
      {"in2", "AB"},   {"out0", "abcd"}, {"out3", "ABC"},     {"in1", "abcd"}};
  for (const auto& [page, text] : kPages) {
    engine.controller.changeCodePage(page);
    stream->resetStream();
    EXPECT_EQ(readOne(*stream), "1000+2000 " + std::string(missing == "nothing" ? text : "abcd"))
        << page;
  }
  EXPECT_EQ(*static_cast<int*>(::dlsym(stub, "openConverters")), 0);
}

/// The library is not there for the first conversion, and no later one looks for it again.
void readWithoutLibrary() {
  Engine engine;
  engine.clock.now = 9999;
  engine.host.settings.setString("CodePage", "Name", "CP1250");
  Ombe::StreamInterface* stream = engine.play("{1}{1}1000\n{1000}{3000}\xB3\xB9");
  lie.library = nullptr;
  EXPECT_EQ(readOne(*stream), "1000+2000 \xB3\xB9");
  EXPECT_GT(std::exchange(lie, {}).uses, 0);
  stream->resetStream();
  EXPECT_EQ(readOne(*stream), "1000+2000 \xB3\xB9");
  stream = engine.play("\xEF\xBB\xBF{1}{1}1000\n{1000}{3000}signed");
  ASSERT_NE(stream, nullptr);
  EXPECT_EQ(readOne(*stream), "1000+2000 signed");
}

[[noreturn]] void exitWithResult() { std::exit(testing::Test::HasFailure() ? 1 : 0); }

TEST(Converter, ThatIsMissingOrFailsLeavesTextUndecodedOrAsFarAsItCame) {
  const testing::ExitedWithCode good(0);
  for (const char* missing : {"nothing", "open", "close", "tounicode", "fromunicode"}) {
    EXPECT_EXIT((readWithStub(missing), exitWithResult()), good, "") << missing;
  }
  EXPECT_EXIT((readWithoutLibrary(), exitWithResult()), good, "");
}

}  // namespace
}  // namespace ombe_test
