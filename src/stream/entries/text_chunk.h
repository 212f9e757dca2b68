// Chunks that carry the text of a subtitle.
#pragma once

#include <cstdint>
#include <memory>

#include "ombe_core/buffer_allocator.h"
#include "ombe_core/media_chunk.h"

namespace Ombe {

/// Gives a chunk back through the allocator that it is bound to.
struct ChunkReleaser {
  void operator()(MediaChunk* chunk) const { chunk->allocator().deleteChunk(chunk); }
};
using OwnedChunk = std::unique_ptr<MediaChunk, ChunkReleaser>;

/// Access to a chunk's bytes for as long as the object lives.
class ChunkAccess {
 public:
  explicit ChunkAccess(MediaChunk& chunk) : chunk_(chunk), bytes_(chunk.lock()) {}
  ~ChunkAccess() { chunk_.unlock(); }
  ChunkAccess(const ChunkAccess&) = delete;
  ChunkAccess& operator=(const ChunkAccess&) = delete;

  [[nodiscard]] const unsigned char* bytes() const { return bytes_; }

 private:
  MediaChunk& chunk_;
  unsigned char* bytes_;
};

/// A new chunk over `data`, which it takes over; `size` counts the bytes of text, also as the
/// chunk's payload size. Times are 0. Throws std::bad_alloc, with `data` freed.
inline OwnedChunk createTextChunk(IBufferAllocator& allocator,
                                  std::unique_ptr<unsigned char[]> data, std::uint32_t size) {
  OwnedChunk chunk(new MediaChunk(allocator));
  chunk->setBuffer(data.release(), size);
  chunk->chunkSize() = size;
  return chunk;
}

}  // namespace Ombe
