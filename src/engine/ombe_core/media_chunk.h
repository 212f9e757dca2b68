// One piece of timed media.
#pragma once

#include <cstdint>

#include "ombe_core/media_buffer.h"

namespace Ombe {

class IBufferAllocator;

/// A buffer with a time. Made with plain new and given back with `allocator().deleteChunk(chunk)`
/// by whoever holds it last; the allocator must outlive it.
class OMBE_API MediaChunk : public MediaBuffer {
 public:
  explicit MediaChunk(IBufferAllocator& allocator);
  ~MediaChunk() override;

  [[nodiscard]] IBufferAllocator& allocator() const { return *allocator_; }

  std::uint32_t timestamp = 0;  ///< start, milliseconds
  std::uint32_t duration = 0;   ///< milliseconds

 private:
  IBufferAllocator* allocator_;

  friend struct MediaChunkLayout;
};

}  // namespace Ombe
