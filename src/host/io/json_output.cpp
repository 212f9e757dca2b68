#include "host/io/json_output.h"

#include <nlohmann/json.hpp>

#include "host/io/failure.h"
#include "host/io/output_file.h"

namespace Ombe {

Json errorJson(const std::string& file, const std::string& step, const std::string& message) {
  return {
      {"file", file.empty() ? Json(nullptr) : Json(file)}, {"step", step}, {"message", message}};
}

Json errorJson(const Failure& failure) {
  return errorJson(failure.file(), failure.step(), failure.reason());
}

void writeJson(const Json& document) {
  OutputFile output("-");
  output.buffer() = document.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
  output.commit();
}

void answer(bool inJson, const std::function<void(Json& document)>& fill) {
  Json document = {{"version", kJsonVersion}};
  try {
    fill(document);
  } catch (const Failure& failure) {
    document["error"] = errorJson(failure);
    if (inJson) writeJson(document);
    throw;
  }
  if (inJson) writeJson(document);
}

}  // namespace Ombe
