// Many sources, each written to an output of its own.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/batch/outputs.h"
#include "host/cli/exit_code.h"
#include "host/io/failure.h"

namespace Ombe {

/// Writes the item's output and sets its result and its remarks. Throws Failure, and then the
/// output is as it was.
using WriteItem = std::function<void(BatchItem& item)>;

/// Whether the output is there and is to stay.
bool isKept(const std::string& output, const OutputChoice& choice);

/// Makes the folder of the item's output, and says in its result whether a file will be replaced.
/// False, and kSkipped, where it is to stay.
bool prepareOutput(BatchItem& item, const OutputChoice& choice);

/// Writes an item that has an output, and notes the result. Of what is found in folders, a .txt
/// file that is no subtitle file is skipped. Any thread; needs no memory to note that there is
/// none.
void processItem(BatchItem& item, const WriteItem& write) noexcept;

/// "2 of 3 files written (1 replaced), 1 failed" on standard error behind "ombe: ", then what is
/// to be said of single items, in their order. Throws nothing: the summary is written even when
/// there is no memory.
ExitCode reportItems(const std::vector<BatchItem>& items);

/// The same summary, without the end of the line.
std::string summaryOf(const std::vector<BatchItem>& items);

/// Why it was not written; that memory is short where not even a reason could be kept.
Failure failureOf(const BatchItem& item);

/// What is to be said of an item that was not written.
std::string lineAbout(const BatchItem& item);

}  // namespace Ombe
