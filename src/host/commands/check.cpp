#include "host/check/check.h"

#include <fmt/format.h>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include "host/cli/common_options.h"
#include "host/io/color_choice.h"
#include "host/io/failure.h"
#include "host/io/json_output.h"
#include "host/io/messages.h"
#include "host/io/named_sources.h"
#include "host/io/output_file.h"

namespace Ombe {
namespace {

struct CheckOptions {
  std::vector<std::string> files;
  std::size_t limit = 20;  ///< findings of a kind to show; 0 for all
  bool json = false;
  ColorMode color = ColorMode::kAuto;
  SessionOptions session;
};

/// How many files came to what.
struct Counts {
  std::size_t open = 0;
  std::size_t refused = 0;
  std::size_t otherTexts = 0;  ///< in folders of films
  [[nodiscard]] ExitCode code() const {
    return refused == 0 ? ExitCode::kDone : ExitCode::kRefused;
  }
};

std::string summary(const Counts& counts) {
  std::string text = fmt::format("{} files: {} open, {} will not", counts.open + counts.refused,
                                 counts.open, counts.refused);
  if (counts.otherTexts != 0) text += fmt::format(", {} other texts left out", counts.otherTexts);
  return text + "\n";
}

/// Hands a report on every file to `take`; of those in folders, on every one that may be meant.
template <typename Take>
Counts checkEach(const CheckOptions& options, const Take& take) {
  Counts counts;
  for (const auto& [kind, path, folder, reason] : namedSources(options.files)) {
    if (kind == NamedSource::Kind::kSkipped) {
      reportError(fmt::format("{}: skipped: {}", path, reason));
      continue;
    }
    const CheckReport report = kind == NamedSource::Kind::kUnreadable
                                   ? unreadable(path, reason)
                                   : checkFile(path, options.session, options.limit);
    if (!folder.empty() && path.ends_with(".txt") && report.failed == Step::kProbe) {
      ++counts.otherTexts;
      continue;
    }
    ++(report.opens() ? counts.open : counts.refused);
    take(report);
  }
  return counts;
}

ExitCode checkAsJson(const CheckOptions& options) {
  OutputFile output("-");
  JsonWriter json(output);
  json.begin('{');
  json.value(kJsonVersion, "version");
  json.begin('[', "files");
  const auto finish = [&](const Json& error) {
    json.end();
    if (!error.is_null()) json.value(error, "error");
    json.end();
    output.commit();
  };
  try {
    const Counts counts =
        checkEach(options, [&json](const CheckReport& report) { writeJson(report, json); });
    finish(nullptr);
    return counts.code();
  } catch (const Failure& failure) {
    finish(errorJson(failure));
    throw;
  }
}

ExitCode checkAsText(const CheckOptions& options) {
  OutputFile output("-", OutputFile::Text::kVisible);
  const bool colored = wantsColor(options.color, STDOUT_FILENO);
  const Counts counts = checkEach(options, [&](const CheckReport& report) {
    writeText(report, colored, output);
    output.drain();
  });
  if (counts.open + counts.refused > 1) output.buffer() += summary(counts);
  output.commit();
  return counts.code();
}

}  // namespace

Command checkCommand() {
  const auto options = std::make_shared<CheckOptions>();
  Option files = filesOption(options->files);
  files.purpose = "Subtitle files and folders of them; - is standard input";
  const Option limit = {.names = {"--limit"},
                        .value = "N",
                        .purpose = "Findings of a kind to show; 0 shows all",
                        .range = {{0, 1000000000}},
                        .initial = std::to_string(options->limit),
                        .set = into(options->limit)};
  return {
      .name = "check",
      .purpose = "Say whether files will play, and if not, why and where",
      .footer =
          "Example: ombe check movie.sub --code-page windows-1250\n         ombe check films/",
      .options = withSourceOptions(
          {files, limit, jsonOption(options->json), colorOption(options->color)}, options->session),
      .run = [options] { return options->json ? checkAsJson(*options) : checkAsText(*options); }};
}

}  // namespace Ombe
