#include "ombe_core/media_chunk.h"

#include <cstddef>

namespace Ombe {

// The offsets of a class with a table are conditionally supported; both compilers support them.
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
struct MediaChunkLayout {
  static_assert(offsetof(MediaBuffer, bufferSize_) == 2 * sizeof(void*) &&
                offsetof(MediaBuffer, chunkSize_) == 2 * sizeof(void*) + 4);
  static_assert(offsetof(MediaChunk, timestamp) == 2 * sizeof(void*) + 8 &&
                offsetof(MediaChunk, duration) == 2 * sizeof(void*) + 12 &&
                offsetof(MediaChunk, allocator_) == 2 * sizeof(void*) + 16 &&
                sizeof(MediaChunk) == 3 * sizeof(void*) + 16);
};

MediaChunk::MediaChunk(IBufferAllocator& allocator) : allocator_(&allocator) {}

MediaChunk::~MediaChunk() = default;

}  // namespace Ombe
