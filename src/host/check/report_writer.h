// What `ombe check` says of a file.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "host/check/examination.h"

namespace Ombe {

/// Lines for people, fit for a terminal: the verdict, then what was found.
void appendText(std::string& out, const CheckReport& report, bool coloured);

nlohmann::ordered_json toJson(const CheckReport& report);

}  // namespace Ombe
