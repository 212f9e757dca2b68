// One line of a MicroDVD file.
#pragma once

#include <cstddef>
#include <cstdint>

namespace Ombe {

/// What a line holds. `count` tells how much of it: 2 for the two frame numbers alone, 3 with a
/// text, less than 2 for a line of another form. `text` points into the line.
struct ScannedLine {
  int count = 0;
  std::int32_t firstFrame = 0;
  std::int32_t lastFrame = 0;
  const char* text = nullptr;
  std::size_t textLength = 0;  ///< bytes
};

/// Reads a NUL-terminated line just as `sscanf(line, "{%d}{%d}%[^\r\n]\n", ...)` does, numbers that
/// overflow included, so the second brace need not be closed for a count of 2. Pure.
ScannedLine scanLine(const char* line);

/// The same for a line whose end is known: NUL stands there, and no CR, LF or NUL before it.
ScannedLine scanLine(const char* line, const char* end);

}  // namespace Ombe
