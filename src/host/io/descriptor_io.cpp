#include "host/io/descriptor_io.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>

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

}  // namespace Ombe
