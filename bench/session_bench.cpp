// The plug-in as an engine drives it. Figures are per line or chunk where items are counted.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "host/cli/common_options.h"
#include "host/session/session.h"
#include "ombe_core/media_source.h"
#include "subtitles.h"

namespace {

using ombe_bench::Encoding;
namespace fs = std::filesystem;

/// A generated file, removed on destruction.
class SubtitleFile {
 public:
  SubtitleFile(std::size_t count, Encoding encoding)
      : path_(fs::temp_directory_path() / ("ombe-bench-" + std::to_string(::getpid()) + ".sub")) {
    std::ofstream(path_, std::ios::binary) << ombe_bench::makeSubtitles(count, encoding);
  }
  SubtitleFile(const SubtitleFile&) = delete;
  SubtitleFile& operator=(const SubtitleFile&) = delete;
  ~SubtitleFile() { fs::remove(path_); }

  [[nodiscard]] std::string path() const { return path_.string(); }

 private:
  fs::path path_;
};

Ombe::SessionOptions builtPlugin() { return {.pluginFolder = Ombe::pluginsBesideProgram()}; }

void open(benchmark::State& state) {
  const auto count = static_cast<std::size_t>(state.range(0));
  const SubtitleFile file(count, Encoding::kUtf8);
  const Ombe::MediaSource source(Ombe::toByteString("file://" + file.path()));
  Ombe::Session session(builtPlugin());
  for ([[maybe_unused]] const auto iteration : state) {
    if (session.container().open(source) != Ombe::kSuccess) state.SkipWithError("not opened");
    state.PauseTiming();
    session.container().deactivate(false);
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(open)->Arg(1000)->Arg(30'000)->Arg(1'000'000)->Unit(benchmark::kMicrosecond);

void read(benchmark::State& state, Encoding encoding, const char* codePage) {
  constexpr std::int64_t kCount = 30'000;
  const SubtitleFile file(kCount, encoding);
  Ombe::SessionOptions options = builtPlugin();
  if (codePage != nullptr) options.codePage = codePage;
  Ombe::Session session(options);
  session.open(file.path());
  std::size_t bytes = 0;
  for ([[maybe_unused]] const auto iteration : state) {
    session.stream().resetStream();
    session.readToEnd([&bytes](const Ombe::Chunk& chunk) { bytes += chunk.text().size(); });
  }
  benchmark::DoNotOptimize(bytes);
  state.SetItemsProcessed(state.iterations() * kCount);
}
BENCHMARK_CAPTURE(read, asItIs, Encoding::kUtf8, nullptr);
BENCHMARK_CAPTURE(read, fromWindows1250, Encoding::kWindows1250, "windows-1250");
BENCHMARK_CAPTURE(read, fromUtf8, Encoding::kUtf8, "UTF8");
BENCHMARK_CAPTURE(read, fromUtf16WithSignature, Encoding::kUtf16, nullptr);

/// To an entry in so many hundredths of the file.
void seek(benchmark::State& state) {
  const SubtitleFile file(30'000, Encoding::kUtf8);
  Ombe::Session session(builtPlugin());
  session.open(file.path());
  std::uint32_t end = 0;
  session.stream().seekStream(0xFFFFFFFF, &end, true);
  const auto time = static_cast<std::uint32_t>(std::int64_t{end} * state.range(0) / 100);
  for ([[maybe_unused]] const auto iteration : state)
    session.stream().seekStream(time, nullptr, true);
}
BENCHMARK(seek)->Arg(1)->Arg(50)->Arg(99);

/// The user changes the frame rate to and fro; every entry is timed anew.
void rescale(benchmark::State& state) {
  constexpr std::int64_t kCount = 30'000;
  const SubtitleFile file(kCount, Encoding::kUtf8);
  Ombe::Session session(builtPlugin());
  session.open(file.path());
  const Ombe::Setting setting(Ombe::MediaType::kSubtitle, "FrameRate", "Ratio");
  std::uint32_t rate = 25;
  for ([[maybe_unused]] const auto iteration : state) {
    rate = rate == 25 ? 24 : 25;
    session.controller().setValue(setting, Ombe::SettingValue::ratio({rate, 1}));
  }
  state.SetItemsProcessed(state.iterations() * kCount);
}
BENCHMARK(rescale);

}  // namespace
