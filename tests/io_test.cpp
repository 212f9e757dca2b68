// Inputs and outputs of the host.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <grp.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <mutex>
#include <thread>

#include "host/io/descriptor_io.h"
#include "host/io/failure.h"
#include "host/io/input_file.h"
#include "host/io/output_file.h"
#include "support/run_program.h"

/// What is to be on the disk, in order: "BYTES file" or "folder", and what the system says of it.
static std::string synced;
static int syncError = 0;

int saySynced(int descriptor) __asm__("fsync");
int saySynced(int descriptor) {
  static std::mutex syncing;
  const std::lock_guard lock(syncing);
  struct stat file {};
  ::fstat(descriptor, &file);
  synced += S_ISDIR(file.st_mode) ? "folder " : std::to_string(file.st_size) + " file ";
  errno = syncError;
  return syncError == 0 ? 0 : -1;
}

namespace ombe_test {
namespace {

namespace fs = std::filesystem;
using namespace Ombe;  // NOLINT(google-build-using-namespace): the subject of every test here

constexpr int kEnding[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE, SIGXCPU, SIGXFSZ};

/// Before the first output looks at them: whoever started this may have had some ignored.
[[maybe_unused]] const bool signalsAct = [] {
  for (const int signal : kEnding) std::signal(signal, SIG_DFL);
  return true;
}();

void write(const fs::path& path, int signal = 0, bool commits = true,
           UnsyncedFolders* later = nullptr) {
  OutputFile output(path.string());
  for (char letter : {'a', 'b', 'c'}) {
    output.buffer().append(1 << 20, letter);
    output.drain();
  }
  if (signal != 0) std::raise(signal);
  if (commits) output.commit(later);
}

std::string ownerOf(const fs::path& path) {
  struct stat file {};
  ::stat(path.c_str(), &file);
  return std::to_string(file.st_uid) + ":" + std::to_string(file.st_gid);
}

TEST(OutputFile, IsThereWholeOrAsItWasBefore) {
  const TempFile old("old", "out");
  const fs::path folder = fs::path(old.path()).parent_path();
  const bool isRoot = ::geteuid() == 0;  // who alone may give files away
  EXPECT_TRUE(!isRoot || ::chown(old.path().c_str(), 1234, 5678) == 0);
  const std::string owner = ownerOf(old.path());
  fs::permissions(old.path(), fs::perms(06640));
  fs::create_symlink("out", folder / "link");
  write(old.path(), 0, false);
  EXPECT_EQ(fs::status(old.path()).permissions(), fs::perms(06640));
  EXPECT_EXIT(write(old.path(), SIGTERM), testing::KilledBySignal(SIGTERM), "");
  for (const fs::path& path : {folder, folder / "none" / "out", fs::path("/dev/full")}) {
    EXPECT_THROW(write(path), Failure) << path;
  }
  syncError = EIO;
  EXPECT_THROW(write(old.path()), Failure) << "the disk has not got it";
  EXPECT_EQ(contentOf(old.path()), "old");
  syncError = 0;
  synced.clear();
  write(folder / "link");
  EXPECT_THAT(synced, testing::MatchesRegex("3145728 file (3145728 file )?folder "));
  synced.clear();
  UnsyncedFolders later;
  write(folder / "link", 0, true, &later);
  write(folder / "new", 0, true, &later);
  EXPECT_THAT(synced, testing::Not(testing::HasSubstr("folder")));
  synced.clear();
  later.sync();
  EXPECT_EQ(synced, "folder ") << "once";
  syncError = EIO;
  EXPECT_THROW(later.sync(), Failure);
  syncError = 0;
  EXPECT_EQ(contentOf(old.path()), contentOf(folder / "new"));
  EXPECT_EQ(fs::file_size(folder / "new"), 3U << 20);
  EXPECT_TRUE(fs::is_symlink(folder / "link"));
  EXPECT_EQ(fs::status(old.path()).permissions(), fs::perms(0640));
  EXPECT_EQ(ownerOf(old.path()), owner);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 3) << "a temporary was left behind";
}

TEST(OutputFile, IsNoMoreOpenThanTheOneThatItReplaces) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root may become somebody else";
  const TempFile old("old", "out");
  fs::permissions(fs::path(old.path()).parent_path(), fs::perms(0777));
  fs::permissions(old.path(), fs::perms(0662));
  const auto writeAsSomebodyElse = [&] {
    if (::setgroups(0, nullptr) != 0 || ::setresgid(65534, 65534, 65534) != 0 ||
        ::setresuid(65534, 65534, 65534) != 0)
      _exit(1);
    write(old.path());
    _exit(fs::status(old.path()).permissions() == fs::perms(0622) ? 0 : 2);
  };
  EXPECT_EXIT(writeAsSomebodyElse(), testing::ExitedWithCode(0), "");
}

TEST(Descriptors, ThatDoNotBlockTakeAndGiveEverything) {
  int ends[2];
  ASSERT_EQ(::pipe2(ends, O_NONBLOCK), 0);
  const std::string sent(1 << 20, 'x');
  std::thread writer([&] {
    EXPECT_EQ(writeBytes(ends[1], sent), 0);
    ::close(ends[1]);
  });
  std::string got;
  char block[4096];
  for (ssize_t size = 0; (size = readBytes(ends[0], block, sizeof block)) > 0;) {
    got.append(block, static_cast<std::size_t>(size));
  }
  ::close(ends[0]);
  writer.join();
  EXPECT_TRUE(got == sent) << got.size();
}

TEST(TemporaryFiles, AreGoneWhicheverSignalEndsTheirThreads) {
  const TempFile target("", "a");
  const fs::path folder = fs::path(target.path()).parent_path();
  const auto run = [&](int signal) {
    const rlimit noCore{};
    ::setrlimit(RLIMIT_CORE, &noCore);
    ::setenv("TMPDIR", folder.c_str(), 1);
    const InputFile copy = InputFile::holding("a");
    std::atomic<int> made{0};
    const auto makeMany = [&] {
      for (;; ++made) OutputFile(target.path()).commit();
    };
    for (int i = 0; i < 4; ++i) std::thread(makeMany).detach();
    while (made < 50) std::this_thread::yield();
    std::raise(signal);
    ::_exit(1);
  };
  for (const int signal : kEnding) {
    for (int i = 0; i < 5; ++i) EXPECT_EXIT(run(signal), testing::KilledBySignal(signal), "");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 1) << signal;
  }
  const auto hangUp = [&] {
    std::signal(SIGHUP, SIG_IGN);  // as nohup has it
    OutputFile(target.path()).commit();
    std::raise(SIGHUP);
    ::_exit(0);
  };
  EXPECT_EXIT(hangUp(), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace ombe_test
