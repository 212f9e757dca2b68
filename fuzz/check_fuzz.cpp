// What is found in a file: the verdict is the plug-in's, the lines are the file's.
#include <algorithm>

#include "cost.h"
#include "host/check/check.h"
#include "host/text/utf8_scan.h"
#include "ombe_core/logger.h"
#include "support.h"
#include "temporary_file.h"

using namespace Ombe;  // NOLINT(google-build-using-namespace)
using ombe_fuzz::Cost;
using ombe_fuzz::Input;
using ombe_fuzz::require;

namespace {

/// What the plug-in says when nobody explains it, and how many subtitles it gives.
std::pair<std::optional<Step>, std::uint64_t> askPlainly(const std::string& path,
                                                         const SessionOptions& options) {
  std::uint64_t subtitles = 0;
  try {
    Session session(options);
    session.open(path);
    session.readToEnd([&subtitles](const Chunk&) { ++subtitles; });
  } catch (const Failure& failure) {
    return {failure.step(), subtitles};
  }
  return {std::nullopt, subtitles};
}

std::size_t countBreaks(std::string_view text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r'; }));
}

void requireKept(const Findings& findings, std::size_t limit) {
  std::map<std::string_view, std::size_t> kept;
  for (const Finding& finding : findings.kept()) ++kept[wordFor(finding.kind)];
  const auto omitted = findings.omitted();
  for (const auto& [word, count] : findings.counts()) {
    const std::size_t expected = limit == 0 ? count : std::min(count, limit);
    require(kept[word] == expected, "the first of each kind are kept");
    const auto lost = omitted.find(word);
    require(count - expected == (lost == omitted.end() ? 0 : lost->second), "and the others told");
  }
}

void requireSaid(const Findings& findings) {
  const std::size_t lines = countBreaks(findings.text()) + 1;
  std::uint32_t before = 0;
  for (const Finding& finding : findings.kept()) {
    require(finding.line <= lines && finding.line >= before, "lines of the text, in order");
    before = finding.line;
    require(!findings.message(finding).empty(), "a message");
    const std::string excerpt = findings.excerpt(finding);
    require(excerpt.size() <= 130 && countBreaks(excerpt) == 0, "the start of one line");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr const char* kCodePages[] = {"", "windows-1250", "UTF-16LE", "Shift_JIS", "GB-18030"};
  static const ombe_fuzz::TemporaryFile file;
  static const PluginLibrary loaded(OMBE_PLUGIN);  // before anything is counted
  Logger::instance().setSink([](const LogRecord&) {});
  Input input(data, size);
  SessionOptions options;
  options.plugin = OMBE_PLUGIN;
  const unsigned choices = input.number();
  const std::size_t limit = choices % 3U;
  if ((choices & 4U) != 0) options.frameRate = Ratio{input.number(), input.number()};
  if ((choices & 8U) != 0) options.codePage = kAutoCodePage;
  if ((choices & 16U) != 0) options.codePage = kCodePages[input.number() % std::size(kCodePages)];
  file.write(input.rest);
  const auto [failed, subtitles] = askPlainly(file.path, options);
  const bool isGuessed = (choices & 8U) != 0 || !isUtf8(input.rest);
  const ombe_fuzz::CostLimit cost(input.rest.size(),
                                  isGuessed ? Cost{3, 1900, 1400} : Cost{2.5, 220, 320});
  const CheckReport report = checkFile(file.path, options, limit);
  require(report.failed == failed && report.subtitles == subtitles, "the plug-in's verdict");
  require(report.opens() != report.findings.has(Severity::kError), "an error for each refusal");
  const auto& counts = report.findings.counts();
  require(!counts.contains(wordFor(Kind::kUnexplained)), "an explanation");
  require(!counts.contains(wordFor(Kind::kDisagreement)), "lines read as the plug-in does");
  requireKept(report.findings, limit);
  requireSaid(report.findings);
  return 0;
}
