// Exports as a shell asks for them: what is written where, what is left out, and what is said.
#include "host/export/export.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <map>
#include <optional>
#include <set>

#include "host/session/plugin_library.h"
#include "support/allocation_faults.h"
#include "support/paths.h"
#include "support/run_program.h"
#include "support/table.h"

namespace ombe_test {
namespace {

namespace fs = std::filesystem;
using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

using Files = std::map<std::string, std::string>;

Files filesBelow(const fs::path& folder) {
  Files files;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.symlink_status().type() != fs::file_type::regular) continue;
    files[entry.path().lexically_relative(folder).string()] = contentOf(entry.path());
  }
  return files;
}

/// "NAME=TEXT, ..." of the files that are new or changed, where TEXT is that of the first cue.
std::string changes(Files before, const Files& after) {
  std::string text;
  for (const auto& [name, content] : after) {
    if (before[name] == content) continue;
    const std::size_t times = content.find("-->");
    const std::size_t cue = times == std::string::npos ? 0 : content.find('\n', times) + 1;
    text += text.empty() ? "" : ", ";
    text += name + "=" + content.substr(cue, content.find('\n', cue) - cue);
  }
  return text;
}

TEST(Export, WritesWhatWasNamedAndNothingElse) {
  for (auto row : readTable("export.txt")) {
    row.resize(5);
    SCOPED_TRACE(row[0] + " | " + row[1]);
    const TempFile first("{1}{2}a\n", "a.sub");
    const fs::path folder = fs::path(first.path()).parent_path();
    fs::create_directories(folder / "A/deep");
    fs::create_directories(folder / "B");
    for (const auto& [name, content] : Files{{"a.txt", "{1}{2}t\n"},
                                             {"A/x.sub", "{1}{2}Ax\n"},
                                             {"A/deep/x.sub", "{1}{2}Adx\n"},
                                             {"A/deep/z.sub", "{1}{2}\n-\n"},
                                             {"B/x.sub", "{1}{2}Bx\n"}}) {
      std::ofstream(folder / name) << content;
    }
    EXPECT_EQ(runShell(folder, row[0]).exitCode, 0);
    const Files before = filesBelow(folder);
    // Without these capabilities permissions bind root as well.
    const std::string drop =
        ::geteuid() == 0 ? "setpriv --bounding-set=-dac_override,-dac_read_search " : "";
    const auto [code, out, err] = runShell(folder, "plain='" + drop + kProgram + "'; " + row[1] +
                                                       "; code=$?; chmod -R u+rwX .; exit $code");
    EXPECT_EQ(std::to_string(code), row[2]);
    EXPECT_EQ(changes(before, filesBelow(folder)), row[3]);
    EXPECT_EQ(err, row[4]);
  }
}

/// Files written when the nth allocation fails; none when it is never reached. Has a frame of its
/// own by which the leak sanitizer knows it.
[[gnu::noinline]] std::optional<std::size_t> writtenWithout(long nth, FaultMode mode) {
  const TempFile first("{1}{2}a\n", "a.sub"), second("{1}{2}b\n", "b.sub");
  const fs::path folder = fs::path(first.path()).parent_path() / "out";
  Ombe::ExportOptions options;
  options.session.plugin = kPlugin;
  options.choice.output = folder.string() + "/";
  options.jobs = 1;
  const std::vector<std::string> sources{first.path(), second.path()};
  bool reports = true;
  CaptureStderr();
  const AllocationFault fault(nth, mode);
  try {
    Ombe::exportSources(sources, options);
  } catch (const std::exception&) {
    reports = false;
  }
  const FaultPause pause;
  const std::size_t written = fs::exists(folder) ? filesBelow(folder).size() : 0;
  EXPECT_THAT(GetCapturedStderr(),
              testing::StartsWith(
                  reports ? "ombe: " + std::to_string(written) + " of 2 files written, " : ""));
  EXPECT_TRUE(reports || written == 0) << nth;
  return fault.happened() ? std::optional(written) : std::nullopt;
}

TEST(Export, SaysWhatWasWrittenWhenMemoryIsShort) {
  // What a plug-in allocates while it is loaded is for the loader to lack.
  const Ombe::PluginLibrary loaded(kPlugin);
  for (const FaultMode mode : {FaultMode::kOnce, FaultMode::kFromThereOn}) {
    std::set<std::size_t> written;
    long nth = 1;
    while (const auto count = writtenWithout(nth++, mode)) written.insert(*count);
    EXPECT_THAT(written, testing::IsSupersetOf({0U, 1U}));
  }
}

}  // namespace
}  // namespace ombe_test
