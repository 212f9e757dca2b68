// What nobody can leave out of opening a MicroDVD file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace ombe_bench {

/// A subtitle: frame numbers and a text of its own.
struct FloorChunk {
  std::int32_t first;
  std::int32_t last;
  std::size_t size;
  std::unique_ptr<char[]> text;
};

/// Reads the file whole, finds its lines, reads two numbers from each, makes one chunk and one text
/// array a line, and sorts the chunks by time. No encodings, rates, styles, log, settings or locks,
/// and malformed lines are skipped. Throws std::runtime_error when the file cannot be read.
std::vector<std::unique_ptr<FloorChunk>> readFloor(const std::string& path);

}  // namespace ombe_bench
