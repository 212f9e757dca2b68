// Memory for whole files.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>

#include "ombe_core/standard_allocator.h"

namespace Ombe {

/// Asks the system for huge pages under a block that is about to be filled: reading a file of 60 MB
/// takes two such blocks, whose 30,000 page faults are half of the work. Only from 32 MiB on, since
/// the C library then maps each block by itself and the advice ends with it. Changes no content;
/// where the system does not follow, nothing is lost.
inline void adviseHugePages(void* block, std::size_t size) {
#ifdef MADV_HUGEPAGE
  constexpr std::size_t kSmallest = std::size_t{32} << 20;
  if (block == nullptr || size < kSmallest) return;
  const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
  const auto start = reinterpret_cast<std::uintptr_t>(block);
  const std::uintptr_t inset = (page - start % page) % page;
  const std::size_t length = (size - inset) / page * page;
  ::madvise(static_cast<char*>(block) + inset, length, MADV_HUGEPAGE);
#else
  static_cast<void>(block);
  static_cast<void>(size);
#endif
}

/// Allocates the text of a file.
class FileTextAllocator final : public StandardAllocator<unsigned char> {
 public:
  unsigned char* allocate(std::uint32_t count) override {
    unsigned char* block = StandardAllocator::allocate(count);
    adviseHugePages(block, count);
    return block;
  }

  /// Valid as long as the process.
  static FileTextAllocator& instance() {
    static FileTextAllocator allocator;
    return allocator;
  }
};

}  // namespace Ombe
