// Bytes in memory as a file that a plug-in can open.
#pragma once

#include <string>
#include <string_view>

namespace Ombe {

/// A file of that content for as long as this lives. Plug-ins open by path and go by the ending, so
/// the bytes need a name once more; removed within milliseconds, they hardly ever reach a disk.
/// Installs nothing in the process: when that is killed meanwhile, the file stays behind.
class HandedFile {
 public:
  /// Throws Failure.
  explicit HandedFile(std::string_view content);
  HandedFile(const HandedFile&) = delete;
  HandedFile& operator=(const HandedFile&) = delete;
  ~HandedFile();

  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  std::string path_;
};

}  // namespace Ombe
