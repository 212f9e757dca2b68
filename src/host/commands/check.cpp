#include "host/check/check.h"

#include <fmt/core.h>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include "host/batch/in_order.h"
#include "host/cli/common_options.h"
#include "host/io/color_choice.h"
#include "host/io/failure.h"
#include "host/io/json_output.h"
#include "host/io/messages.h"
#include "host/io/named_sources.h"
#include "host/text/number_text.h"

namespace Ombe {
namespace {

struct CheckOptions {
  std::vector<std::string> files;
  std::size_t limit = 20;  ///< findings of a kind to show; 0 for all
  std::size_t jobs = 0;
  bool isQuiet = false;   ///< shows only files with findings
  bool isStrict = false;  ///< warnings count for the exit code
  bool json = false;
  ColorMode color = ColorMode::kAuto;
  SessionOptions session;
};

/// What many files came to.
struct Totals {
  struct OfKind {
    std::size_t findings = 0;
    std::size_t files = 0;
  };
  std::size_t open = 0;
  std::size_t refused = 0;
  std::size_t otherTexts = 0;  ///< in folders of films
  bool hasWarnings = false;
  std::map<std::string_view, OfKind> kinds = {};

  void add(const CheckReport& report) {
    ++(report.opens() ? open : refused);
    hasWarnings |= report.findings.has(Severity::kWarning);
    for (const auto& [word, count] : report.findings.counts()) {
      kinds[word].findings += count;
      ++kinds[word].files;
    }
  }
};

std::string summary(const Totals& totals) {
  std::string text = fmt::format("{} files: {} open, {} will not", totals.open + totals.refused,
                                 totals.open, totals.refused);
  if (totals.otherTexts != 0)
    text += fmt::format(", {} left out", countText(totals.otherTexts, "other text"));
  for (const auto& [word, count] : totals.kinds) {
    text += fmt::format("\n  {}: {} in {} file{}", word, count.findings, count.files,
                        count.files == 1 ? "" : "s");
  }
  return text + "\n";
}

Json toJson(const Totals& totals) {
  Json kinds = Json::object();
  for (const auto& [word, count] : totals.kinds) {
    kinds[std::string(word)] = {{"findings", count.findings}, {"files", count.files}};
  }
  return {{"open", totals.open},
          {"refused", totals.refused},
          {"otherTexts", totals.otherTexts},
          {"kinds", std::move(kinds)}};
}

CheckReport checkSource(const NamedSource& source, const CheckOptions& options) {
  return source.kind == NamedSource::Kind::kUnreadable
             ? unreadable(source.path, source.reason)
             : checkFile(source.path, options.session, options.limit);
}

/// Hands a report on every file to `take`, in their order; of those in folders, on every one that
/// may be meant.
template <typename Take>
Totals checkEach(const CheckOptions& options, const Take& take) {
  Totals totals;
  const std::vector<NamedSource> sources = namedSources(options.files);
  std::vector<std::optional<CheckReport>> reports(sources.size());
  runInOrder(
      sources.size(), options.jobs,
      [&](std::size_t number) {
        if (sources[number].kind == NamedSource::Kind::kSkipped) return;
        reports[number] = checkSource(sources[number], options);
      },
      [&](std::size_t number) {
        const NamedSource& source = sources[number];
        const auto found = std::exchange(reports[number], std::nullopt);
        if (!found) return reportError(fmt::format("{}: skipped: {}", source.path, source.reason));
        const bool isOther = !source.folder.empty() && source.path.ends_with(".txt") &&
                             found->failed == Step::kProbe;
        if (isOther) return static_cast<void>(++totals.otherTexts);
        if (found->choice) reportError(found->file + ": " + describe(*found->choice));
        totals.add(*found);
        if (!options.isQuiet || !found->findings.counts().empty()) take(*found);
      },
      [&](std::size_t number) { return sources[number].path; });
  return totals;
}

Totals checkAsJson(const CheckOptions& options) {
  FilesJson json;
  try {
    Totals totals =
        checkEach(options, [&json](const CheckReport& report) { writeJson(report, json.files()); });
    json.finish("summary", toJson(totals));
    return totals;
  } catch (const Failure& failure) {
    if (failure.step() != Step::kWrite) json.finish("error", errorJson(failure));
    throw;
  }
}

Totals checkAsText(const CheckOptions& options) {
  OutputFile output("-", OutputFile::Text::kVisible);
  const bool colored = wantsColor(options.color, STDOUT_FILENO);
  Totals totals = checkEach(options, [&](const CheckReport& report) {
    writeText(report, colored, output);
    output.drain();
  });
  if (totals.open + totals.refused > 1) output.buffer() += summary(totals);
  output.commit();
  return totals;
}

ExitCode check(const CheckOptions& options) {
  const Totals totals = options.json ? checkAsJson(options) : checkAsText(options);
  const bool isWell = totals.refused == 0 && !(options.isStrict && totals.hasWarnings);
  return isWell ? ExitCode::kDone : ExitCode::kRefused;
}

std::vector<Option> ownOptions(CheckOptions& options) {
  return {sourcesOption(options.files),
          {.names = {"--limit"},
           .value = "N",
           .purpose = "Findings of a kind to show; 0 shows all",
           .range = {{0, 1000000000}},
           .initial = std::to_string(options.limit),
           .set = into(options.limit)},
          {.names = {"--quiet"},
           .purpose = "Show only files with findings",
           .set = into(options.isQuiet)},
          {.names = {"--strict"},
           .purpose = "Exit with 1 for warnings as well",
           .set = into(options.isStrict)},
          jobsOption(options.jobs),
          jsonOption(options.json),
          colorOption(options.color)};
}

}  // namespace

Command checkCommand() {
  const auto options = std::make_shared<CheckOptions>();
  return {.purpose = "Say whether files will play, and if not, why and where",
          .footer =
              "Example: ombe check movie.sub --code-page windows-1250\n         ombe check films/",
          .options = withSourceOptions(ownOptions(*options), options->session),
          .run = [options] { return check(*options); }};
}

}  // namespace Ombe
