// The sources that a command line names, those in folders included.
#pragma once

#include <string>
#include <vector>

namespace Ombe {

struct NamedSource {
  enum class Kind {
    kNamed,       ///< by itself; whether it is there is not known yet
    kFound,       ///< a .sub or .txt file in a folder that was named
    kSkipped,     ///< looks like one and cannot be, or is a link to a folder
    kUnreadable,  ///< a folder that could not be searched, or not to its end
  };
  Kind kind;
  std::string path;    ///< "-" is standard input
  std::string folder;  ///< the folder named that holds it; empty when it was named by itself
  std::string reason;  ///< why it is skipped or unreadable
};

/// Every source once, under the first of its names: the arguments in their order, a folder replaced
/// by what is below it, sorted. Links to folders are not followed.
std::vector<NamedSource> namedSources(const std::vector<std::string>& arguments);

}  // namespace Ombe
