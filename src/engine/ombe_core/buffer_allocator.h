// The interface through which media chunks are released.
#pragma once

#include <cstddef>
#include <cstdint>

#include "ombe_core/export.h"

namespace Ombe {

class MediaChunk;

/// Every chunk is bound to one allocator at construction and goes back through it. Six slots; the
/// meaning of slots 2 and 3 and of the value that slot 3 sets is the engine's.
class OMBE_API IBufferAllocator {
 public:
  IBufferAllocator() = default;
  IBufferAllocator(const IBufferAllocator&) = delete;
  IBufferAllocator& operator=(const IBufferAllocator&) = delete;
  virtual ~IBufferAllocator();  // slots 0 and 1

  virtual bool reservedSlot2(std::uint32_t argument);  // answers false
  virtual void reservedSlot3(std::uint32_t argument);  // stores the argument
  /// Slot 4. Memory for a chunk's bytes, or null when the allocator provides none.
  virtual void* allocate(std::uint32_t a, std::uint32_t b, std::uint32_t c) = 0;
  /// Slot 5. Takes back a chunk with its bytes; null is allowed in overriders. The body given here
  /// disposes of the chunk object alone, for overriders that have freed its bytes.
  virtual void deleteChunk(MediaChunk* chunk) = 0;

 private:
  std::uint32_t reservedValue_ = 8;

  friend struct BufferAllocatorLayout;
};

}  // namespace Ombe
