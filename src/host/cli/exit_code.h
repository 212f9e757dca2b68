// What the program makes of the end of a command.
#pragma once

#include <functional>
#include <nlohmann/json_fwd.hpp>
#include <string>

namespace Ombe {

class Failure;

/// Exit codes of the program.
enum class ExitCode : int {
  kDone = 0,
  kRefused = 1,     ///< the source was refused or could not be read, or the output not be written
  kWrongUsage = 2,  ///< the command line asks for what there is not
  kNoPlugin = 3,    ///< the plug-in could not be loaded
};

ExitCode exitCodeOf(const Failure& failure);

/// The failure in a line for people: "FILE: REASON", and what to do where the program knows.
std::string messageOf(const Failure& failure);

/// The same for programs.
nlohmann::ordered_json errorJson(const Failure& failure);

/// Calls `fill` with a document that holds the version, and writes it if JSON is wanted: complete,
/// or with what was filled in before a Failure and the failure as "error". The Failure goes on.
void withJson(bool isWanted, const std::function<void(nlohmann::ordered_json& document)>& fill);

}  // namespace Ombe
