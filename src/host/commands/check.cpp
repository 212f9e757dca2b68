#include <unistd.h>

#include <nlohmann/json.hpp>

#include "host/check/report_writer.h"
#include "host/cli/common_options.h"
#include "host/io/color_choice.h"
#include "host/io/input_file.h"
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

CheckReport examineNamed(const std::string& name, const CheckOptions& options) {
  const InputFile input(name);
  return examine(input.name(), input.path(), options.session, options.limit);
}

ExitCode checkAsJson(const CheckOptions& options) {
  ExitCode code = ExitCode::kDone;
  withJson(true, [&](Json& document) {
    Json& files = document["files"] = Json::array();
    for (const std::string& file : options.files) {
      const CheckReport report = examineNamed(file, options);
      if (!report.opens) code = ExitCode::kRefused;
      files.push_back(toJson(report));
    }
  });
  return code;
}

ExitCode check(const CheckOptions& options) {
  if (options.json) return checkAsJson(options);
  const bool coloured = wantsColor(options.color, STDOUT_FILENO);
  ExitCode code = ExitCode::kDone;
  OutputFile output("-", OutputFile::Text::kVisible);
  for (const std::string& file : options.files) {
    const CheckReport report = examineNamed(file, options);
    if (!report.opens) code = ExitCode::kRefused;
    appendText(output.buffer(), report, coloured);
    output.drain();
  }
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
  return {.name = "check",
          .purpose = "Say whether files will play, and if not, why and where",
          .footer = "Example: ombe check movie.sub --code-page windows-1250",
          .options = withSourceOptions({filesOption(options->files), limit,
                                        jsonOption(options->json), colorOption(options->color)},
                                       options->session),
          .run = [options] { return check(*options); }};
}

}  // namespace Ombe
