// The frame rate of a file that is played without a chosen one.
#pragma once

#include <string>

namespace Ombe {

class Session;

/// "25 fps (stated)" as the file's header line says, or "23.976 fps (default)"; empty when the
/// plug-in's format has no such line. Looks at the beginning of the file alone, which the session
/// has open, and not even at that when the path is empty.
std::string fileRateText(Session& session, const std::string& path);

}  // namespace Ombe
