#include "ombe_core/file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "ombe_core/string_tools.h"

namespace Ombe {

File::File() = default;

File::~File() { close(); }

std::int32_t File::open(const std::wstring& path, FileOpenMode mode) {
  close();
  if (mode != FileOpenMode::kRead) return EINVAL;
  descriptor_ = ::open(StringTools::wstringToBytes(path).c_str(), O_RDONLY | O_CLOEXEC);
  return descriptor_ < 0 ? errno : 0;
}

std::uint64_t File::getTotalSize() const {
  struct stat status {};
  if (descriptor_ < 0 || ::fstat(descriptor_, &status) != 0) return 0;
  return static_cast<std::uint64_t>(status.st_size);
}

void File::close() {
  if (descriptor_ >= 0) ::close(descriptor_);
  descriptor_ = -1;
}

}  // namespace Ombe
