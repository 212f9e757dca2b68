#include "floor.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <stdexcept>
#include <string_view>

namespace ombe_bench {
namespace {

/// The bytes of a file, in one block and, when `blocks` says so, from there in a string.
struct FileText {
  FileText(const std::string& path, Blocks blocks) {
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat status {};
    if (file >= 0 && ::fstat(file, &status) == 0) {
      const auto size = static_cast<std::size_t>(status.st_size);
      block.reset(blocks == Blocks::kTwo ? new char[size]() : new char[size]);
      if (::read(file, block.get(), size) == status.st_size) bytes = {block.get(), size};
    }
    if (file >= 0) ::close(file);
    if (bytes.data() == nullptr) throw std::runtime_error(path + ": cannot be read");
    if (blocks == Blocks::kOne) return;
    copy = bytes;
    bytes = copy;
    block.reset();
  }

  std::unique_ptr<char[]> block;
  std::string copy;
  std::string_view bytes;
};

/// "{number}" at `at`, which moves behind it; null when there is none.
const char* readBraced(const char* at, const char* end, std::int32_t& number) {
  if (at == end || *at != '{') return nullptr;
  const auto [stop, error] = std::from_chars(at + 1, end, number);
  return error == std::errc() && stop != end && *stop == '}' ? stop + 1 : nullptr;
}

std::unique_ptr<FloorChunk> readLine(const char* line, const char* end) {
  std::int32_t first = 0;
  std::int32_t last = 0;
  const char* text = readBraced(line, end, first);
  if (text != nullptr) text = readBraced(text, end, last);
  if (text == nullptr) return nullptr;
  const auto size = static_cast<std::size_t>(end - text);
  auto chunk = std::make_unique<FloorChunk>(
      FloorChunk{first, last, size, std::unique_ptr<char[]>(new char[size])});
  std::memcpy(chunk->text.get(), text, size);
  return chunk;
}

}  // namespace

std::vector<std::unique_ptr<FloorChunk>> readFloor(const std::string& path, Blocks blocks) {
  const FileText text(path, blocks);
  std::vector<std::unique_ptr<FloorChunk>> chunks;
  const char* const end = text.bytes.data() + text.bytes.size();
  for (const char* line = text.bytes.data(); line < end;) {
    const auto* found =
        static_cast<const char*>(std::memchr(line, '\n', static_cast<std::size_t>(end - line)));
    const char* const lineEnd = found == nullptr ? end : found;
    if (auto chunk = readLine(line, lineEnd)) chunks.push_back(std::move(chunk));
    line = lineEnd + 1;
  }
  const auto earlier = [](const auto& a, const auto& b) { return a->first < b->first; };
  if (!std::is_sorted(chunks.begin(), chunks.end(), earlier)) {  // files nearly always are
    std::sort(chunks.begin(), chunks.end(), earlier);
  }
  return chunks;
}

void copyEach(const std::vector<std::unique_ptr<FloorChunk>>& chunks) {
  for (const auto& chunk : chunks) {
    const auto copy = std::make_unique<FloorChunk>(FloorChunk{
        chunk->first, chunk->last, chunk->size, std::unique_ptr<char[]>(new char[chunk->size])});
    std::memcpy(copy->text.get(), chunk->text.get(), chunk->size);
    asm volatile("" : : "r"(copy->text.get()) : "memory");  // the compiler must not leave it out
  }
}

}  // namespace ombe_bench
