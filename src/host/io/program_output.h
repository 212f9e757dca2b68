// What other programs say.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace Ombe {

/// The first bytes, 4,096 at most, that a program writes to standard output; it reads nothing and
/// its errors go nowhere. Nothing when there is no such program. No shell comes in between: the
/// name is looked for in PATH, the other words reach the program as they are. Waits for its end,
/// which comes soon when it writes more.
std::optional<std::string> outputOf(std::vector<std::string> command);

}  // namespace Ombe
