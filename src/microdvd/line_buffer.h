// The reusable block that holds the text of one line at a time.
#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>

namespace Ombe {

/// Starts at 1,024 bytes and grows, never shrinks. The constructor throws std::bad_alloc.
class LineBuffer {
 public:
  LineBuffer() : data_(new char[kFirstCapacity]) {}

  /// Makes room for more than `length` bytes; what the buffer held may be lost. False when there is
  /// no memory, and the buffer is then unusable.
  bool makeRoom(std::uint32_t length) {
    if (capacity_ > length) return true;
    capacity_ = length + 1;
    data_.reset();  // before the new block, so that both need not exist at once
    data_.reset(new (std::nothrow) char[capacity_]);
    return data_ != nullptr;
  }

  /// Copies a text for which there is room and ends it with NUL.
  char* hold(std::string_view text) {
    std::memcpy(data_.get(), text.data(), text.size());
    data_[text.size()] = '\0';
    return data_.get();
  }

 private:
  static constexpr std::uint32_t kFirstCapacity = 1024;

  std::uint32_t capacity_ = kFirstCapacity;
  std::unique_ptr<char[]> data_;
};

}  // namespace Ombe
