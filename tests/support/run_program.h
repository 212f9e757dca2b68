// The built `ombe`, as a shell runs it.
#pragma once

#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "support/fakes.h"
#include "support/paths.h"

namespace ombe_test {

struct ProgramResult {
  int exitCode;  // -1 when a signal ended it
  std::string out;
  std::string err;
};

inline std::string contentOf(const std::filesystem::path& path) {
  std::ostringstream out;
  out << std::ifstream(path, std::ios::binary).rdbuf();
  return out.str();
}

/// Runs a shell command line, in which `ombe` is the built program, in `folder`.
inline ProgramResult runShell(const std::filesystem::path& folder, const std::string& line) {
  const TempFile out("", "out");
  const std::string command = std::string("ombe() { '") + kProgram + "' \"$@\"; }; cd '" +
                              folder.string() + "' && { " + line + "; } >'" + out.path() + "' 2>'" +
                              out.path() + ".err'";
  const int status = std::system(command.c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, contentOf(out.path()),
          contentOf(out.path() + ".err")};
}

}  // namespace ombe_test
