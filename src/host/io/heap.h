// The heap of a process that does its work and ends.
#pragma once

#include <string>

namespace Ombe {

/// Readies the heap for the source at `path`: large blocks that are given back are used again for
/// what comes next, where the C library would hand each back to the system and touch new pages; and
/// for a large source the heap grows in one piece of huge pages, if the system has any. It changes
/// the whole process, so it is nothing for a library, nor for a program that stays after its work.
/// Any thread.
void readyHeap(const std::string& path);

}  // namespace Ombe
