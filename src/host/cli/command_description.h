// The command line as data, for whatever describes it: completions and the manual page.
#pragma once

#include <string>
#include <vector>

namespace Ombe {

struct OptionDescription {
  std::vector<std::string> names;    ///< with their dashes, short ones first; of a positional one
  std::string value;                 ///< what stands for the value; empty for a flag
  std::vector<std::string> choices;  ///< the only values there are, if so
  std::string purpose;
  bool isPositional;
  bool takesFile;
};

struct CommandDescription {
  std::string name;
  std::string purpose;
  std::string footer;  ///< example and remarks
  std::vector<OptionDescription> options;
};

/// Of the program as a whole first, then of its commands; those not meant for people are left out.
std::vector<CommandDescription> describeCommands();

}  // namespace Ombe
