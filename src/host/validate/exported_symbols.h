// What a loaded module exports.
#pragma once

#include <string>
#include <vector>

namespace Ombe {

/// Names of the symbols that the module of this handle of dlopen defines for others, without weak
/// ones and those that linkers add. Empty, too, when the module cannot be asked.
std::vector<std::string> exportedSymbols(void* module);

}  // namespace Ombe
