// The frame rate of a file that is played without a chosen one.
#pragma once

#include <string>

namespace Ombe {

/// "25 fps (stated)" as the file's header line says, or "23.976 fps (default)". Looks at the
/// beginning of the file alone. `codePage` is that of a signature, empty where there is none.
std::string fileRateText(const std::string& path, const std::string& codePage);

}  // namespace Ombe
