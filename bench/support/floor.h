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

/// What the file is read into.
enum class Blocks {
  kOne,  ///< a block that is parsed where it is
  kTwo   ///< a zero-filled block, and a string of its own for the text, as the plug-in reads
};

/// Reads the file whole, finds its lines, reads two numbers from each, makes one chunk and one text
/// array a line, and sorts the chunks by time. No encodings, rates, styles, log, settings or locks,
/// and malformed lines are skipped. Throws std::runtime_error when the file cannot be read.
std::vector<std::unique_ptr<FloorChunk>> readFloor(const std::string& path, Blocks blocks);

/// Copies every chunk with its text, and gives the copy back: what no reader can leave out.
void copyEach(const std::vector<std::unique_ptr<FloorChunk>>& chunks);

}  // namespace ombe_bench
