#include "host/batch/progress.h"

#include <unistd.h>

#include <filesystem>
#include <new>

#include "host/io/descriptor_io.h"
#include "host/text/visible_text.h"

namespace Ombe {
namespace {

constexpr char kClear[] = "\r\x1B[K";

}  // namespace

Progress::Progress(std::size_t total)
    : isShown_(total > 1 && ::isatty(STDERR_FILENO) != 0), total_(total) {}

void Progress::show(const std::string& file) noexcept {
  if (!isShown_) return;
  ++done_;
  try {
    static_cast<void>(writeBytes(
        STDERR_FILENO, kClear +
                           ("[" + std::to_string(done_) + "/" + std::to_string(total_) + "] ") +
                           visibleLine(std::filesystem::path(file).filename().string())));
  } catch (const std::exception&) {
    // Memory is short: the next one will show.
  }
}

void Progress::hide() {
  if (isShown_) static_cast<void>(writeBytes(STDERR_FILENO, kClear));
}

}  // namespace Ombe
