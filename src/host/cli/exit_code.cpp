#include "host/cli/exit_code.h"

#include <nlohmann/json.hpp>

#include "host/io/failure.h"
#include "host/io/json_output.h"

namespace Ombe {
namespace {

/// What to try next, to be joined to the reason; empty where nothing is known to help.
const char* adviceOn(Step step) {
  if (step == Step::kFind) return "; name it with --plugin or OMBE_PLUGIN_PATH";
  return step == Step::kOpen ? "; ombe check says what is wrong" : "";
}

}  // namespace

ExitCode exitCodeOf(const Failure& failure) {
  const bool isOfPlugin = failure.step() == Step::kFind || failure.step() == Step::kLoad;
  return isOfPlugin ? ExitCode::kNoPlugin : ExitCode::kRefused;
}

std::string messageOf(const Failure& failure) {
  return std::string(failure.what()) + adviceOn(failure.step());
}

Json errorJson(const Failure& failure) {
  return errorJson(failure.file(), stepName(failure.step()),
                   failure.reason() + adviceOn(failure.step()));
}

void withJson(bool isWanted, const std::function<void(Json& document)>& fill) {
  Json document = {{"version", kJsonVersion}};
  try {
    fill(document);
  } catch (const Failure& failure) {
    document["error"] = errorJson(failure);
    if (isWanted) writeJson(document);
    throw;
  }
  if (isWanted) writeJson(document);
}

}  // namespace Ombe
