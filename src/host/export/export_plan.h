// Which files an export of several writes.
#pragma once

#include <string>
#include <vector>

namespace Ombe {

struct ExportItem {
  std::string input;
  std::string output;
  bool isFound;         ///< found in a folder, not named
  std::string trouble;  ///< why it cannot be read, where that is known already
};

/// Whether the command line asks for one output each, in a folder, rather than for one output.
bool isBatch(const std::vector<std::string>& inputs, const std::string& output);

/// Every input with its output below `folder`: the input's name (with its path inside a folder that
/// was named) with the ending of the format. An input whose output is taken by an earlier one keeps
/// its own ending before the new one, and gets a number if need be. Folders are searched for .sub
/// and .txt files; a file named twice comes once. A folder that cannot be read, named or found, is
/// an item with trouble.
std::vector<ExportItem> planExport(const std::vector<std::string>& inputs,
                                   const std::string& folder, const std::string& format);

}  // namespace Ombe
