#include "host/session/source.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "host/io/descriptor_io.h"
#include "host/io/failure.h"
#include "host/text/utf8_scan.h"

namespace Ombe {
namespace fs = std::filesystem;
namespace {

/// Reads the file to its end. An error number, 0 for success.
int errorReading(const std::string& file) {
  const Descriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
  if (descriptor.get() < 0) return errno;
  std::array<char, 65536> block{};
  ssize_t got = 0;
  do {
    got = readBytes(descriptor.get(), block.data(), block.size());
  } while (got > 0);
  // A plug-in also asks where the end is.
  return got < 0 || ::lseek(descriptor.get(), 0, SEEK_END) < 0 ? errno : 0;
}

}  // namespace

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
    throw Failure(file, Step::kRead, "is not a regular file: give it as standard input");
  }
  if (!isUtf8(fs::absolute(file.c_str()).native())) {  // up to the NUL that plug-ins read to
    throw Failure(file, Step::kRead,
                  "its path is not UTF-8, so no URI can name it: rename the file or folder");
  }
}

std::string reasonOfFailedRead(const std::string& file, const std::string& record) {
  std::int64_t wanted = 0;
  std::int64_t got = -1;
  std::sscanf(record.c_str(), "Tried to read %" SCNd64 " bytes, got %" SCNd64, &wanted, &got);
  std::error_code ignored;
  const auto size = static_cast<std::int64_t>(fs::file_size(file.c_str(), ignored));
  if (got >= 0) return got == size ? std::string() : record;
  const int error = errorReading(file);
  return error == 0 ? record : std::generic_category().message(error);
}

}  // namespace Ombe
