#include "ombe_core/media_buffer.h"

namespace Ombe {

MediaBuffer::MediaBuffer() = default;

MediaBuffer::~MediaBuffer() {
  if (bufferSize_ == 0) delete[] data_;
}

void MediaBuffer::setBuffer(unsigned char* data, std::uint32_t size) {
  data_ = data;
  bufferSize_ = size;
}

unsigned char* MediaBuffer::lock() { return data_; }

void MediaBuffer::unlock() {}

}  // namespace Ombe
