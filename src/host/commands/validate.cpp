#include <fmt/core.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "host/cli/common_options.h"
#include "host/io/color_choice.h"
#include "host/io/failure.h"
#include "host/io/json_output.h"
#include "host/io/messages.h"
#include "host/io/output_file.h"
#include "host/session/source.h"
#include "host/validate/validation.h"

namespace Ombe {
namespace {

namespace fs = std::filesystem;

struct ValidateOptions {
  std::string plugin;
  std::string pluginFolder = pluginsBesideProgram();
  std::string junit;
  bool isList = false;
  bool json = false;
  ColorMode color = ColorMode::kAuto;
  ValidationOptions validation;
};

ExitCode list(bool isJson) {
  Json checks = Json::array();
  std::string text;
  for (const ContractCheck& check : allContractChecks()) {
    if (isJson) checks.push_back(toJson(check));
    if (!isJson) text += fmt::format("{:<32}{}\n", check.name, check.expected);
  }
  if (isJson) {
    writeJson({{"version", kJsonVersion}, {"checks", std::move(checks)}});
  } else {
    writeOutput("-", std::move(text));
  }
  return ExitCode::kDone;
}

ExitCode codeOf(const Validation& validation) {
  if (!validation.isLoadable) return ExitCode::kNoPlugin;
  return validation.count(Outcome::kFailed) == 0 ? ExitCode::kDone : ExitCode::kRefused;
}

Validation validateAsText(const ValidateOptions& options) {
  const bool colored = wantsColor(options.color, STDOUT_FILENO);
  Validation validation = validate(options.validation, [&](const Judgement& judgement) {
    writeOutput("-", textOf(judgement, colored), OutputFile::Text::kVisible);
  });
  writeOutput("-", summaryOf(validation), OutputFile::Text::kVisible);
  return validation;
}

Validation validateAsJson(const ValidateOptions& options) {
  Validation validation;
  withJson(true, [&](Json& document) {
    validation = validate(options.validation, [](const Judgement& /*judgement*/) {});
    document["validation"] = toJson(validation);
  });
  return validation;
}

bool isOneOf(const std::string& file, const Subject& subject) {
  std::error_code ignored;
  const auto is = [&](const std::string& other) { return fs::equivalent(file, other, ignored); };
  return is(subject.plugin) || std::any_of(subject.samples.begin(), subject.samples.end(), is);
}

ExitCode run(ValidateOptions& options) {
  if (options.isList) return list(options.json);
  const std::vector<std::string> unknown = unknownNames(options.validation.only);
  if (!unknown.empty()) {
    reportError("--only: no check or group '" + unknown.front() + "'", "--list names them.");
    return ExitCode::kWrongUsage;
  }
  std::error_code error;
  static_cast<void>(fs::temp_directory_path(error));
  if (error)  // where checks copy to; no fault of the plug-in
    throw Failure(Step::kWrite, "TMPDIR: cannot be used: " + error.message());
  Subject& subject = options.validation.subject;
  subject.plugin = findPlugin(options.plugin, options.pluginFolder);
  for (std::string& sample : subject.samples) {
    requireReadable(sample);
    sample = fs::absolute(sample).string();
  }
  if (!options.junit.empty() && isOneOf(options.junit, subject)) {
    reportError("--junit: " + options.junit + " is an input");
    return ExitCode::kWrongUsage;
  }
  const Validation validation = options.json ? validateAsJson(options) : validateAsText(options);
  if (!options.junit.empty()) writeOutput(options.junit, junitXml(validation));
  return codeOf(validation);
}

std::vector<Option> optionsOf(ValidateOptions& options) {
  ValidationOptions& validation = options.validation;
  return {{.names = {"PLUGIN"},
           .purpose = "Plug-in, or folder that it is in",
           .takesFile = true,
           .set = into(options.plugin)},
          {.names = {"--sample"},
           .value = "FILE",
           .purpose = "File of its format, one of 4 KiB at most among them; may be repeated",
           .takesFile = true,
           .isRepeated = true,
           .set = into(validation.subject.samples)},
          {.names = {"--only"},
           .value = "NAME",
           .purpose = "Ask this check, or this group of checks; may be repeated",
           .isRepeated = true,
           .set = into(validation.only)},
          {.names = {"--list"}, .purpose = "Write what is asked", .set = into(options.isList)},
          {.names = {"--timeout"},
           .value = "SECONDS",
           .purpose = "How long a check may take",
           .range = {{1, 3600}},
           .initial = std::to_string(validation.limitSeconds),
           .set = into(validation.limitSeconds)},
          {.names = {"--loud"},
           .purpose = "Let the plug-in write to standard error",
           .set = into(validation.isLoud)},
          {.names = {"--junit"},
           .value = "FILE",
           .purpose = "Write a report for build servers, too",
           .takesFile = true,
           .set = into(options.junit)},
          jsonOption(options.json),
          colorOption(options.color)};
}

}  // namespace

Command validateCommand() {
  const auto options = std::make_shared<ValidateOptions>();
  return {.purpose = "Ask a plug-in of any format whether it keeps the engine's contract",
          .footer =
              "Example: ombe validate ./mine.so --sample film.sub\n"
              "Each check runs in a process of its own, so a crash or a hang fails one check.",
          .options = optionsOf(*options),
          .run = [options] { return run(*options); }};
}

}  // namespace Ombe
