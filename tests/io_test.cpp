// Inputs and outputs of the host.
#include <gtest/gtest.h>

#include <csignal>

#include "host/io/failure.h"
#include "host/io/output_file.h"
#include "support/run_program.h"

namespace ombe_test {
namespace {

namespace fs = std::filesystem;
using namespace Ombe;  // NOLINT(google-build-using-namespace): the subject of every test here

TEST(OutputFile, IsThereWholeOrAsItWasBefore) {
  const TempFile old("old", "out");
  const fs::path folder = fs::path(old.path()).parent_path();
  fs::permissions(old.path(), fs::perms(06640));
  fs::create_symlink("out", folder / "link");
  const auto write = [](const fs::path& path, int signal = 0, bool commits = true) {
    OutputFile output(path.string());
    for (char letter : {'a', 'b', 'c'}) {
      output.buffer().append(1 << 20, letter);
      output.drain();
    }
    if (signal != 0) std::raise(signal);
    if (commits) output.commit();
  };
  write(old.path(), 0, false);
  EXPECT_EQ(fs::status(old.path()).permissions(), fs::perms(06640));
  EXPECT_EXIT(write(old.path(), SIGTERM), testing::KilledBySignal(SIGTERM), "");
  for (const fs::path& path : {folder, folder / "none" / "out", fs::path("/dev/full")}) {
    EXPECT_THROW(write(path), Failure) << path;
  }
  EXPECT_EQ(contentOf(old.path()), "old");
  write(folder / "link");
  write(folder / "new");
  EXPECT_EQ(contentOf(old.path()), contentOf(folder / "new"));
  EXPECT_EQ(fs::file_size(folder / "new"), 3U << 20);
  EXPECT_TRUE(fs::is_symlink(folder / "link"));
  EXPECT_EQ(fs::status(old.path()).permissions(), fs::perms(0640));
  EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 3) << "a temporary was left behind";
}

}  // namespace
}  // namespace ombe_test
