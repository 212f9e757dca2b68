// What is said of a mended file.
#pragma once

#include <functional>
#include <nlohmann/json_fwd.hpp>
#include <string>

#include "host/batch/outputs.h"
#include "host/fix/fix_file.h"

namespace Ombe {

/// Lines for people, as they came from the file: to be made visible.
void describe(const std::string& name, const FixedText& fixed,
              const std::function<void(const std::string& line)>& say);
/// The same for programs.
nlohmann::ordered_json toJson(const BatchItem& item, const FixedText& fixed, bool isWritten);

}  // namespace Ombe
