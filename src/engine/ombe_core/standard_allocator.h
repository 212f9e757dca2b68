// The engine's small polymorphic element allocator.
#pragma once

#include <cstdint>
#include <limits>
#include <new>

#include "ombe_core/export.h"

namespace Ombe {

/// Allocates arrays of T for strings and lists. Slots: destructor, deleting destructor, allocate,
/// deallocate. Has no data, so one instance may serve any number of threads at once.
template <typename T>
class StandardAllocator {
 public:
  virtual ~StandardAllocator() = default;

  /// Array new of `count` uninitialised elements. Throws std::bad_alloc, also when the size in
  /// bytes of elements wider than a byte does not fit in 32 bits. The caller owns the block and
  /// hands it back with deallocate.
  virtual T* allocate(std::uint32_t count) {
    if constexpr (sizeof(T) > 1) {
      if (count > std::numeric_limits<std::uint32_t>::max() / sizeof(T)) throw std::bad_alloc();
    }
    return new T[count];
  }

  /// Array delete of a block from allocate; nothing for null.
  virtual void deallocate(T* block) { delete[] block; }

  /// The process-wide instance, made on first use, destroyed when the library is unloaded. Defined
  /// for char, unsigned char and Node<unsigned long long>.
  static StandardAllocator& defaultInstance();
};

static_assert(sizeof(StandardAllocator<char>) == sizeof(void*));

template <>
OMBE_API StandardAllocator<char>& StandardAllocator<char>::defaultInstance();
template <>
OMBE_API StandardAllocator<unsigned char>& StandardAllocator<unsigned char>::defaultInstance();

}  // namespace Ombe
