// JSON as the commands write it: one object with a version, which counts up when a reader of the
// old form would misread the new one.
#pragma once

#include <functional>
#include <nlohmann/json_fwd.hpp>
#include <string>

namespace Ombe {

class Failure;

using Json = nlohmann::ordered_json;

inline constexpr int kJsonVersion = 1;

/// {"file": ..., "step": ..., "message": ...}; the file is null when the error is of none.
Json errorJson(const std::string& file, const std::string& step, const std::string& message);
Json errorJson(const Failure& failure);

/// Writes the document to standard output. Bytes that are no UTF-8 become U+FFFD.
void writeJson(const Json& document);

/// Calls `fill` with a document that holds the version, and writes it if JSON is wanted: complete,
/// or with what was filled in before a Failure and the failure as "error". The Failure goes on.
void answer(bool inJson, const std::function<void(Json& document)>& fill);

}  // namespace Ombe
