// The lines of a text as the plug-in splits it, numbered as an editor numbers them.
#pragma once

#include <cstdint>
#include <string>

#include "microdvd/lines/text_tokenizer.h"

namespace Ombe {

/// Keeps a copy of the text, which is split in place. One thread at a time.
class LineWalker {
 public:
  /// At most 2^31 - 1 bytes; a NUL byte ends the walk.
  explicit LineWalker(std::string text);
  LineWalker(const LineWalker&) = delete;
  LineWalker& operator=(const LineWalker&) = delete;

  /// Goes to the next line that is not empty; false behind the last one.
  bool next();

  /// NUL-terminated, without the line's end; valid until the next call.
  [[nodiscard]] const char* line() const { return line_; }
  /// Counts from 1; LF, CR LF and CR end a line.
  [[nodiscard]] std::uint64_t number() const { return number_; }

 private:
  std::string original_;
  std::string split_;
  TextTokenizer tokens_;
  const char* line_ = nullptr;
  std::size_t counted_ = 0;  // bytes whose line ends are in number_
  std::uint64_t number_ = 1;
};

}  // namespace Ombe
