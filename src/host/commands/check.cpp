#include "host/check/check.h"

#include <unistd.h>

#include <nlohmann/json.hpp>

#include "host/cli/common_options.h"
#include "host/io/color_choice.h"
#include "host/io/failure.h"
#include "host/io/json_output.h"
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

/// Hands a report on every file to `take`.
template <typename Take>
ExitCode checkEach(const CheckOptions& options, const Take& take) {
  ExitCode code = ExitCode::kDone;
  for (const std::string& file : options.files) {
    const CheckReport report = checkFile(file, options.session, options.limit);
    if (!report.opens()) code = ExitCode::kRefused;
    take(report);
  }
  return code;
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
    const ExitCode code =
        checkEach(options, [&json](const CheckReport& report) { writeJson(report, json); });
    finish(nullptr);
    return code;
  } catch (const Failure& failure) {
    finish(errorJson(failure));
    throw;
  }
}

ExitCode checkAsText(const CheckOptions& options) {
  OutputFile output("-", OutputFile::Text::kVisible);
  const bool colored = wantsColor(options.color, STDOUT_FILENO);
  const ExitCode code = checkEach(options, [&](const CheckReport& report) {
    writeText(report, colored, output);
    output.drain();
  });
  output.commit();
  return code;
}

}  // namespace

Command checkCommand() {
  const auto options = std::make_shared<CheckOptions>();
  const Option limit = {.names = {"--limit"},
                        .value = "N",
                        .purpose = "Findings of a kind to show; 0 shows all",
                        .range = {{0, 1000000000}},
                        .initial = std::to_string(options->limit),
                        .set = into(options->limit)};
  return {
      .name = "check",
      .purpose = "Say whether files will play, and if not, why and where",
      .footer = "Example: ombe check movie.sub --code-page windows-1250",
      .options = withSourceOptions({filesOption(options->files), limit, jsonOption(options->json),
                                    colorOption(options->color)},
                                   options->session),
      .run = [options] { return options->json ? checkAsJson(*options) : checkAsText(*options); }};
}

}  // namespace Ombe
