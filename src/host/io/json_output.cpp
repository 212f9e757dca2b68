#include "host/io/json_output.h"

#include <nlohmann/json.hpp>

#include "host/io/output_file.h"

namespace Ombe {

Json errorJson(const std::string& file, const std::string& step, const std::string& message) {
  return {
      {"file", file.empty() ? Json(nullptr) : Json(file)}, {"step", step}, {"message", message}};
}

void writeJson(const Json& document) {
  OutputFile output("-");
  output.buffer() = document.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
  output.commit();
}

}  // namespace Ombe
