// What to advise where a code page is missing.
#pragma once

#include <string>
#include <vector>

namespace Ombe {

/// "try --code-page A, B or C", or what to do when nothing is likely.
std::string codePageAdvice(const std::vector<std::string>& likely);

}  // namespace Ombe
