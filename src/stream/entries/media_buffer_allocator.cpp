#include "stream/entries/media_buffer_allocator.h"

#include "ombe_core/media_chunk.h"

namespace Ombe {

void* MediaBufferAllocator::allocate(std::uint32_t /*a*/, std::uint32_t /*b*/,
                                     std::uint32_t /*c*/) {
  return nullptr;
}

void MediaBufferAllocator::deleteChunk(MediaChunk* chunk) {
  if (chunk == nullptr) return;
  if (chunk->bufferSize() != 0) {
    delete[] chunk->lock();
    chunk->unlock();
  }
  IBufferAllocator::deleteChunk(chunk);
}

}  // namespace Ombe
