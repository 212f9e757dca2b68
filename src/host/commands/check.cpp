#include <unistd.h>

#include <nlohmann/json.hpp>

#include "host/check/report_writer.h"
#include "host/cli/options.h"
#include "host/commands/commands.h"
#include "host/io/color_choice.h"
#include "host/io/input_file.h"
#include "host/io/json_output.h"
#include "host/io/output_file.h"

namespace Ombe {
namespace {

CheckReport examineNamed(const std::string& name, const Options& options) {
  const InputFile input(name);
  return examine(input.name(), input.path(), options.session, options.limit);
}

ExitCode checkAsJson(const Options& options) {
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

}  // namespace

ExitCode runCheck(const Options& options) {
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

}  // namespace Ombe
