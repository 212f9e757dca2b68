#include "host/io/descriptor_io.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <system_error>

#include "host/io/failure.h"

namespace Ombe {
namespace {

/// Asked after a call that failed, and answered when repeating it is worth while. Keeps errno when
/// it is not.
bool isToBeRepeated(int descriptor, short awaited) {
  if (errno == EINTR) return true;
  if (errno != EAGAIN && errno != EWOULDBLOCK) return false;
  pollfd source{descriptor, awaited, 0};
  ::poll(&source, 1, -1);  // when this fails, the call tells
  return true;
}

}  // namespace

void Descriptor::reset(int number) {
  if (number_ >= 0) ::close(number_);
  number_ = number;
}

int openUnnamed(const std::string& folder, mode_t permissions) {
  const int file = ::open(folder.c_str(), O_RDWR | O_TMPFILE | O_CLOEXEC, permissions);
  if (file >= 0 || (errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL)) return file;
  return ::memfd_create("ombe", MFD_CLOEXEC);
}

int writeBytes(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
    if (written >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(written));
    } else if (!isToBeRepeated(descriptor, POLLOUT)) {
      return errno;
    }
  }
  return 0;
}

ssize_t readBytes(int descriptor, char* buffer, std::size_t size) {
  ssize_t got = 0;
  do {
    got = ::read(descriptor, buffer, size);
  } while (got < 0 && isToBeRepeated(descriptor, POLLIN));
  return got;
}

bool fill(std::string& bytes, int file) {
  std::size_t size = 0;
  ssize_t got = 0;
  do {
    got = readBytes(file, bytes.data() + size, bytes.size() - size);
    if (got > 0) size += static_cast<std::size_t>(got);
  } while (got > 0 && size < bytes.size());
  bytes.resize(size);
  return got >= 0;
}

int copyBytes(int from, int to) {
  std::array<char, 65536> block{};
  for (;;) {
    const ssize_t got = readBytes(from, block.data(), block.size());
    if (got <= 0) return got == 0 ? 0 : errno;
    const int error = writeBytes(to, {block.data(), static_cast<std::size_t>(got)});
    if (error != 0) return error;
  }
}

std::string readFile(const std::string& path, std::uintmax_t limit) {
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(path.c_str(), error);
  std::string bytes(error ? 0 : static_cast<std::size_t>(std::min(size, limit)), '\0');
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_LARGEFILE));
  if (!error && (file.get() < 0 || !fill(bytes, file.get())))
    error.assign(errno, std::generic_category());
  if (error) throw Failure(path, Step::kRead, "cannot be read: " + error.message());
  return bytes;
}

}  // namespace Ombe
