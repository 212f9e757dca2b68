#include "ombe_core/media_chunk.h"

namespace Ombe {

MediaChunk::MediaChunk(IBufferAllocator& allocator) : allocator_(&allocator) {}

MediaChunk::~MediaChunk() = default;

}  // namespace Ombe
