// What the program says on standard error.
#pragma once

#include <string_view>

namespace Ombe {

/// Writes "ombe: MESSAGE" as one line, made visible, and the advice, a literal, as another. Any
/// thread.
void reportError(std::string_view message, std::string_view advice = {});

/// Sends the log records of the whole process to standard error, one visible line each:
/// "channel function:line text".
void logToStandardError();

}  // namespace Ombe
