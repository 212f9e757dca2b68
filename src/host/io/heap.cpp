#include "host/io/heap.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <system_error>
#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace Ombe {

#ifdef __GLIBC__
namespace {

constexpr std::uint64_t kLargeSource = std::uint64_t{4} << 20;
constexpr std::uint64_t kMostAhead = std::uint64_t{1} << 30;
constexpr std::size_t kHugePage = std::size_t{2} << 20;

/// Makes the heap grow by `size` bytes, which are addresses until they are used, and asks for huge
/// pages there. Nothing is lost where either is refused.
void growInHugePages(int size) {
  void* start = ::sbrk(0);
  ::mallopt(M_TOP_PAD, size);
  void* volatile larger = std::malloc(std::size_t{256} << 10);  // than what the heap begins with
  std::free(larger);
  ::mallopt(M_TOP_PAD, 128 << 10);
  std::size_t length =
      static_cast<std::size_t>(static_cast<char*>(::sbrk(0)) - static_cast<char*>(start));
  if (std::align(kHugePage, kHugePage, start, length) == nullptr) return;
  static_cast<void>(::madvise(start, length, MADV_HUGEPAGE));
}

}  // namespace

void readyHeap(const std::string& path) {
  ::mallopt(M_MMAP_MAX, 0);
  ::mallopt(M_TRIM_THRESHOLD, INT_MAX);
  if (::gettid() != ::getpid()) return;  // other threads have heaps of their own
  std::error_code error;
  const std::uint64_t size = std::filesystem::file_size(path.c_str(), error);
  if (error || size < kLargeSource) return;
  // A source takes three times its size while it is opened: twice as it is, then as subtitles.
  growInHugePages(static_cast<int>(std::min(4 * size, kMostAhead)));
}
#else
void readyHeap(const std::string& /*path*/) {}
#endif

}  // namespace Ombe
