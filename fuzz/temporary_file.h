// The file that targets have opened.
#pragma once

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace ombe_fuzz {

/// One for each process, removed at its end.
struct TemporaryFile {
  ~TemporaryFile() { std::filesystem::remove(path); }
  void write(std::string_view bytes) const { std::ofstream(path, std::ios::binary) << bytes; }

  const std::string path =
      std::filesystem::temp_directory_path() / ("ombe-" + std::to_string(::getpid()) + ".sub");
};

}  // namespace ombe_fuzz
