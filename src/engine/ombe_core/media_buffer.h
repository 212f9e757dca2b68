// The bytes of a media chunk.
#pragma once

#include <cstdint>

#include "ombe_core/export.h"

namespace Ombe {

/// Holds a block of bytes without copying it. Not synchronised: a chunk is used by one thread at a
/// time.
class OMBE_API MediaBuffer {
 public:
  MediaBuffer();
  MediaBuffer(const MediaBuffer&) = delete;
  MediaBuffer& operator=(const MediaBuffer&) = delete;
  virtual ~MediaBuffer();  // slots 0 and 1

  /// Slot 2. Attaches `size` bytes from array new, which from then on go with the chunk: they are
  /// freed when the chunk is released through its allocator. A block of size 0, which no allocator
  /// ever locks, is freed by the buffer itself.
  virtual void setBuffer(unsigned char* data, std::uint32_t size);
  virtual unsigned char* lock();  // slot 3; the bytes, to be used until unlock; null without any
  virtual void unlock();          // slot 4; once after every lock

  /// Bytes attached, as given to setBuffer.
  [[nodiscard]] std::uint32_t bufferSize() const { return bufferSize_; }
  /// Bytes of payload, set by whoever filled the buffer.
  [[nodiscard]] std::uint32_t& chunkSize() { return chunkSize_; }

 private:
  unsigned char* data_ = nullptr;
  std::uint32_t bufferSize_ = 0;
  std::uint32_t chunkSize_ = 0;

  friend struct MediaChunkLayout;
};

}  // namespace Ombe
