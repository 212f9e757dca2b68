// What the program says on standard error.
#pragma once

#include <string_view>

namespace Ombe {

/// Writes "ombe: MESSAGE" as one line. Any thread.
void reportError(std::string_view message);

/// Sends the log records of the whole process to standard error, one line each:
/// "channel function:line text".
void logToStandardError();

}  // namespace Ombe
