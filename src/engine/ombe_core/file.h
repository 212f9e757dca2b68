// A file of the engine.
#pragma once

#include <cstdint>
#include <string>

#include "ombe_core/export.h"

namespace Ombe {

enum class FileOpenMode : std::int32_t { kRead = 0 };

/// Opens a file by wide-character path. Not synchronised. The destructor closes it.
class OMBE_API File {
 public:
  File();
  ~File();
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  /// 0 on success, else the error number of the system. Closes what was open before. Bytes of the
  /// path that are no UTF-8 travel as the code points that uStringToWstring gives them.
  std::int32_t open(const std::wstring& path, FileOpenMode mode);

  /// Bytes; 0 when no file is open.
  [[nodiscard]] std::uint64_t getTotalSize() const;

 private:
  void close();

  int descriptor_ = -1;
};

}  // namespace Ombe
