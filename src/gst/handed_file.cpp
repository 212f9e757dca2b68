#include "gst/handed_file.h"

#include <fcntl.h>
#include <glib.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>

#include "host/io/descriptor_io.h"
#include "host/io/failure.h"

namespace Ombe {

HandedFile::HandedFile(std::string_view content)
    : path_(std::string(g_get_tmp_dir()) + "/ombe-XXXXXX.sub") {
  constexpr int kEnding = 4;
  const int file = ::mkostemps(path_.data(), kEnding, O_CLOEXEC);
  int error = file < 0 ? errno : writeBytes(file, content);
  if (file >= 0 && ::close(file) != 0 && error == 0) error = errno;
  if (error == 0) return;
  if (file >= 0) ::unlink(path_.c_str());
  throw Failure(Step::kRead, "no temporary file: " + std::generic_category().message(error));
}

HandedFile::~HandedFile() { ::unlink(path_.c_str()); }

}  // namespace Ombe
