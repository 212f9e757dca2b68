#include "floor.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <stdexcept>

namespace ombe_bench {
namespace {

struct FileText {
  std::unique_ptr<char[]> bytes;
  std::size_t size = 0;
};

FileText readWhole(const std::string& path) {
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  struct stat status {};
  FileText text;
  if (file >= 0 && ::fstat(file, &status) == 0) {
    text.size = static_cast<std::size_t>(status.st_size);
    text.bytes.reset(new char[text.size]);
    const ssize_t got = ::read(file, text.bytes.get(), text.size);
    if (got != status.st_size) text.bytes.reset();
  }
  if (file >= 0) ::close(file);
  if (text.bytes == nullptr) throw std::runtime_error(path + ": cannot be read");
  return text;
}

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

std::vector<std::unique_ptr<FloorChunk>> readFloor(const std::string& path) {
  const FileText text = readWhole(path);
  std::vector<std::unique_ptr<FloorChunk>> chunks;
  const char* const end = text.bytes.get() + text.size;
  for (const char* line = text.bytes.get(); line < end;) {
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

}  // namespace ombe_bench
