#include "host/session/source.h"

#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "host/io/failure.h"
#include "host/text/utf8_scan.h"

namespace Ombe {
namespace fs = std::filesystem;

std::string sourceUri(const std::string& file) { return "file://" + fs::absolute(file).string(); }

void requireReadable(const std::string& file) {
  std::error_code error;
  if (::access(file.c_str(), R_OK) != 0) {
    error.assign(errno, std::generic_category());
  } else if (fs::is_directory(file, error)) {
    error = std::make_error_code(std::errc::is_a_directory);
  }
  if (error) throw Failure(file, Step::kRead, "cannot be read: " + error.message());
  if (!fs::is_regular_file(file)) {  // a plug-in reads it more than once
    throw Failure(file, Step::kRead, "is not a regular file");
  }
  if (!isUtf8(fs::absolute(file.c_str()).native())) {  // up to the NUL that plug-ins read to
    throw Failure(file, Step::kRead,
                  "its path is not UTF-8, so no URI can name it: rename the file or folder");
  }
}

}  // namespace Ombe
