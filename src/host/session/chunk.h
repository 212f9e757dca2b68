// A delivered chunk in the reader's hands.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <utility>

#include "ombe_core/buffer_allocator.h"
#include "ombe_core/media_chunk.h"

namespace Ombe {

/// Owns a chunk, or nothing, and gives it back through the chunk's own allocator, which must still
/// be there. The bytes stay locked, and the text valid, as long as this object. One thread at a
/// time.
class Chunk {
 public:
  Chunk() = default;
  explicit Chunk(MediaChunk* chunk) : chunk_(chunk) {
    if (chunk_ == nullptr || chunk_->bufferSize() == 0) return;
    const unsigned char* bytes = chunk_->lock();
    if (bytes == nullptr) return;
    text_ = {reinterpret_cast<const char*>(bytes),
             std::min(chunk_->chunkSize(), chunk_->bufferSize())};
  }
  Chunk(Chunk&& other) noexcept
      : chunk_(std::exchange(other.chunk_, nullptr)), text_(std::exchange(other.text_, {})) {}
  Chunk& operator=(Chunk&& other) noexcept {
    std::swap(chunk_, other.chunk_);
    std::swap(text_, other.text_);
    return *this;
  }
  ~Chunk() {
    if (chunk_ == nullptr) return;
    if (chunk_->bufferSize() != 0) chunk_->unlock();
    chunk_->allocator().deleteChunk(chunk_);
  }

  explicit operator bool() const { return chunk_ != nullptr; }

  /// Milliseconds; of a chunk that is there.
  [[nodiscard]] std::uint32_t timestamp() const { return chunk_->timestamp; }
  [[nodiscard]] std::uint32_t duration() const { return chunk_->duration; }
  [[nodiscard]] std::string_view text() const { return text_; }

 private:
  MediaChunk* chunk_ = nullptr;
  std::string_view text_;
};

}  // namespace Ombe
