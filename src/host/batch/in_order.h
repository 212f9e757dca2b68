// Work on several threads whose results are taken one after the other.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace Ombe {

using NumberedWork = std::function<void(std::size_t number)>;
using ItemName = std::function<std::string(std::size_t number)>;

/// Calls `work` with 0 to count - 1 on as many threads as `jobs` says (0 for one a processor), the
/// caller's among them, and `take` with the same numbers in their order, one at a time, each when
/// its work is done. Work is never further ahead than twice the threads. What either throws ends
/// it and is thrown here, when no thread works any more. Where threads cannot be made, those there
/// are do all the work; nothing is allocated once the first works. Between calls of `take`, which
/// may be none, a line on standard error counts those that are done and names the last, if that is
/// a terminal and there are several.
void runInOrder(std::size_t count, std::size_t jobs, const NumberedWork& work,
                const NumberedWork& take, const ItemName& name);

}  // namespace Ombe
