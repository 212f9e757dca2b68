// JSON as the commands write it: one object with a version, which counts up when a reader of the
// old form would misread the new one.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace Ombe {

using Json = nlohmann::ordered_json;

inline constexpr int kJsonVersion = 1;

/// {"file": ..., "step": ..., "message": ...}; the file is null when the error is of none.
Json errorJson(const std::string& file, const std::string& step, const std::string& message);

/// Writes the document to standard output. Bytes that are no UTF-8 become U+FFFD.
void writeJson(const Json& document);

}  // namespace Ombe
