#include "ombe_core/buffer_allocator.h"

#include "ombe_core/media_chunk.h"

namespace Ombe {

// The offsets of a class with a table are conditionally supported; both compilers support them.
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
struct BufferAllocatorLayout {
  static_assert(offsetof(IBufferAllocator, reservedValue_) == sizeof(void*) &&
                sizeof(IBufferAllocator) == 2 * sizeof(void*));
};

IBufferAllocator::~IBufferAllocator() = default;

bool IBufferAllocator::reservedSlot2(std::uint32_t /*argument*/) { return false; }

void IBufferAllocator::reservedSlot3(std::uint32_t argument) { reservedValue_ = argument; }

void IBufferAllocator::deleteChunk(MediaChunk* chunk) { delete chunk; }

}  // namespace Ombe
