#include "host/check/line_walker.h"

#include <utility>

namespace Ombe {

LineWalker::LineWalker(std::string text)
    : original_(std::move(text)), split_(original_), tokens_(split_.data()) {}

bool LineWalker::next() {
  line_ = tokens_.nextToken("\r\n", nullptr);
  if (line_ == nullptr) return false;
  const auto at = static_cast<std::size_t>(line_ - split_.data());
  for (; counted_ < at; ++counted_) {
    const char byte = original_[counted_];
    // A CR LF counts at its LF; a line never begins with one.
    if (byte == '\n' || (byte == '\r' && original_[counted_ + 1] != '\n')) ++number_;
  }
  return true;
}

}  // namespace Ombe
