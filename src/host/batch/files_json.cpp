#include "host/batch/files_json.h"

#include <nlohmann/json.hpp>

namespace Ombe {

FilesJson::FilesJson() {
  json_.begin('{');
  json_.value(kJsonVersion, "version");
  json_.begin('[', "files");
}

void FilesJson::finish(std::string_view name, const Json& value) {
  json_.end();
  json_.value(value, name);
  json_.end();
  output_.commit();
}

}  // namespace Ombe
