// An owning block of memory that answers null instead of throwing.
#pragma once

#include <algorithm>
#include <cstdint>
#include <new>
#include <type_traits>

namespace ktl {

/// Holds `size` elements from array new, or no block at all: there is a block exactly when the size
/// is not 0. Never copied. Belongs to one thread at a time.
template <typename T>
class MemoryBuffer {
  static_assert(std::is_trivial_v<T>, "the elements are not constructed");

 public:
  MemoryBuffer(std::uint32_t size, bool clear) { resize(size, clear); }
  MemoryBuffer(const MemoryBuffer&) = delete;
  MemoryBuffer& operator=(const MemoryBuffer&) = delete;
  virtual ~MemoryBuffer() { resize(0, false); }

  /// Another size replaces the block by a new, uninitialised one; when memory is short there is
  /// none afterwards. `clear` fills the block with zeros, also when the size stays.
  void resize(std::uint32_t size, bool clear) {
    if (size != size_) {
      delete[] data_;
      data_ = size == 0 ? nullptr : allocate(size);
      size_ = data_ == nullptr ? 0 : size;
    }
    if (clear && data_ != nullptr) std::fill_n(data_, size_, T{});
  }

  [[nodiscard]] bool isNull() const { return data_ == nullptr; }

  /// Valid until the next change of size.
  [[nodiscard]] T* data() { return data_; }
  [[nodiscard]] const T* data() const { return data_; }

 private:
  static T* allocate(std::uint32_t size) {
    try {
      return new T[size];
    } catch (const std::bad_alloc&) {
      return nullptr;
    }
  }

  T* data_ = nullptr;
  std::uint32_t size_ = 0;
};

}  // namespace ktl
