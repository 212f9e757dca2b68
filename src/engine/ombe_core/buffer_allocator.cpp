#include "ombe_core/buffer_allocator.h"

#include "ombe_core/media_chunk.h"

namespace Ombe {

IBufferAllocator::~IBufferAllocator() = default;

bool IBufferAllocator::reservedSlot2(std::uint32_t /*argument*/) { return false; }

void IBufferAllocator::reservedSlot3(std::uint32_t argument) { reservedValue_ = argument; }

void IBufferAllocator::deleteChunk(MediaChunk* chunk) { delete chunk; }

}  // namespace Ombe
