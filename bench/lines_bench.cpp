// From text to lines to what they hold.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "microdvd/lines/line_scan.h"
#include "microdvd/lines/style_codes.h"
#include "microdvd/lines/text_tokenizer.h"
#include "subtitles.h"

namespace {

constexpr std::size_t kLines = 1000;

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  for (std::size_t at = 0; at < text.size(); at = text.find('\n', at) + 1) {
    lines.push_back(text.substr(at, text.find('\n', at) - at));
  }
  return lines;
}

void countLines(benchmark::State& state, std::size_t lines) {
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(lines));
}

/// Each pass needs the text afresh, since splitting consumes it; the copy is part of the figure.
void tokenizer(benchmark::State& state) {
  const std::string text = ombe_bench::makeSubtitles(kLines);
  std::string consumed = text;
  for ([[maybe_unused]] const auto iteration : state) {
    std::memcpy(consumed.data(), text.data(), text.size());
    Ombe::TextTokenizer lines(consumed.data());
    while (const char* line = lines.nextToken("\r\n", nullptr)) benchmark::DoNotOptimize(line);
  }
  countLines(state, kLines);
}
BENCHMARK(tokenizer);

void lineScan(benchmark::State& state) {
  const auto lines = linesOf(ombe_bench::makeSubtitles(kLines));
  for ([[maybe_unused]] const auto iteration : state) {
    for (const std::string& line : lines) {
      benchmark::DoNotOptimize(Ombe::scanLine(line.c_str(), line.c_str() + line.size()));
    }
  }
  countLines(state, lines.size());
}
BENCHMARK(lineScan);

void lineScanBySscanf(benchmark::State& state) {
  const auto lines = linesOf(ombe_bench::makeSubtitles(kLines));
  for ([[maybe_unused]] const auto iteration : state) {
    for (const std::string& line : lines) {
      int first = 0;
      int last = 0;
      char text[1024];
      benchmark::DoNotOptimize(
          std::sscanf(line.c_str(), "{%d}{%d}%1023[^\r\n]\n", &first, &last, text));
      benchmark::DoNotOptimize(text);
    }
  }
  countLines(state, lines.size());
}
BENCHMARK(lineScanBySscanf);

void styleCodes(benchmark::State& state, std::string_view text) {
  for ([[maybe_unused]] const auto iteration : state)
    benchmark::DoNotOptimize(Ombe::translateStyleCodes(text));
}
BENCHMARK_CAPTURE(styleCodes, none, "Where were you this morning?");
BENCHMARK_CAPTURE(styleCodes, slash, "/Where were you this morning?");
BENCHMARK_CAPTURE(styleCodes, italicAndBold, "{y:ib}Where were you this morning?");
BENCHMARK_CAPTURE(styleCodes, colour, "{c:$0000FF}Where were you this morning?");

}  // namespace
