// Releases the chunks of a container.
#pragma once

#include "ombe_core/buffer_allocator.h"

namespace Ombe {

/// One a container, owned by it; every chunk that the container makes is bound to it. Provides no
/// memory: chunks bring their text along, a byte array from array new. Keeps no record, so any
/// thread may release chunks at any time until the container is destroyed.
class MediaBufferAllocator : public IBufferAllocator {
 public:
  /// Null, whatever is asked for.
  void* allocate(std::uint32_t a, std::uint32_t b, std::uint32_t c) override;

  /// Frees the text, then the chunk; nothing for null.
  void deleteChunk(MediaChunk* chunk) override;
};

}  // namespace Ombe
