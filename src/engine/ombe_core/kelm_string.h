// The engine's string, passed by value across the plug-in boundary.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <string_view>
#include <utility>

#include "ombe_core/standard_allocator.h"

namespace Ombe {

/// A string of 8-bit elements that owns its bytes. Three fields in a fixed order: data, length
/// (32 bits, without the terminating NUL), allocator. A non-empty string owns length + 1 bytes,
/// NUL-terminated, from its allocator; an empty one may have no storage at all (data null). The
/// allocator is not owned. Not synchronised: distinct objects may be used by distinct threads.
template <typename T, typename Allocator = StandardAllocator<T>>
class kelm_string {
  static_assert(sizeof(T) == 1, "strings are sequences of bytes");

 public:
  kelm_string() noexcept : allocator_(&Allocator::defaultInstance()) {}
  explicit kelm_string(Allocator& allocator) noexcept : allocator_(&allocator) {}

  /// Copies a NUL-terminated text; null makes an empty string. Throws std::bad_alloc.
  kelm_string(const T* text)  // NOLINT(google-explicit-constructor): literals name settings
      : kelm_string(text, text == nullptr ? 0 : terminatedLength(text)) {}

  /// Copies `length` bytes, NULs among them included. Throws std::bad_alloc.
  kelm_string(const T* bytes, std::uint32_t length)
      : kelm_string(bytes, length, Allocator::defaultInstance()) {}
  kelm_string(const T* bytes, std::uint32_t length, Allocator& allocator) : allocator_(&allocator) {
    if (bytes == nullptr || length == 0) return;
    if (length > maximumLength) throw std::bad_alloc();
    data_ = allocator_->allocate(length + 1);
    std::memcpy(data_, bytes, length);
    data_[length] = T{};
    length_ = length;
  }

  /// A copy comes from the process-wide allocator, whatever the original came from: it may outlive
  /// the allocator of a plug-in or host.
  kelm_string(const kelm_string& other) : kelm_string(other.data_, other.length_) {}
  kelm_string(kelm_string&& other) noexcept : allocator_(other.allocator_) { swap(other); }

  /// On std::bad_alloc the string keeps its old value.
  kelm_string& operator=(const kelm_string& other) {
    if (this != &other) kelm_string(other).swap(*this);
    return *this;
  }
  kelm_string& operator=(kelm_string&& other) noexcept {
    swap(other);
    return *this;
  }
  ~kelm_string() { allocator_->deallocate(data_); }

  void swap(kelm_string& other) noexcept {
    std::swap(data_, other.data_);
    std::swap(length_, other.length_);
    std::swap(allocator_, other.allocator_);
  }

  /// The bytes, NUL-terminated, or null when there is no storage. Valid until the next change.
  [[nodiscard]] const T* data() const noexcept { return data_; }
  [[nodiscard]] T* data() noexcept { return data_; }

  /// The same, but never null: an empty string yields a pointer to a NUL.
  [[nodiscard]] const T* c_str() const noexcept {
    static constexpr T kNothing[1] = {};
    return data_ == nullptr ? kNothing : data_;
  }
  [[nodiscard]] std::uint32_t length() const noexcept { return length_; }
  [[nodiscard]] bool empty() const noexcept { return length_ == 0; }

  /// By content: lengths and bytes agree; no storage counts as empty.
  friend bool operator==(const kelm_string& a, const kelm_string& b) noexcept {
    return a.length_ == b.length_ &&
           (a.length_ == 0 || std::memcmp(a.data_, b.data_, a.length_) == 0);
  }

  /// The terminating NUL has to fit as well.
  static constexpr std::uint32_t maximumLength = 0xFFFFFFFEU;

 private:
  static std::uint32_t terminatedLength(const T* text) {
    const std::size_t length = std::strlen(reinterpret_cast<const char*>(text));
    if (length > maximumLength) throw std::bad_alloc();
    return static_cast<std::uint32_t>(length);
  }

  T* data_ = nullptr;
  std::uint32_t length_ = 0;
  Allocator* allocator_;

  friend struct StringLayout;
};

/// Byte order of the string's fields as every binary of the engine knows it.
struct StringLayout {
  using Text = kelm_string<char>;
  static_assert(sizeof(Text) == 3 * sizeof(void*));
  static_assert(offsetof(Text, data_) == 0 && offsetof(Text, length_) == sizeof(void*) &&
                offsetof(Text, allocator_) == 2 * sizeof(void*));
};

using String = kelm_string<char>;
using ByteString = kelm_string<unsigned char>;

/// The string's bytes as characters; valid as long as the string is unchanged.
template <typename T>
std::string_view view(const kelm_string<T>& text) noexcept {
  return {reinterpret_cast<const char*>(text.c_str()), text.length()};
}

/// A byte string holding a copy of `text`. Throws std::bad_alloc, also for a text that is too long.
inline ByteString toByteString(std::string_view text) {
  if (text.size() > ByteString::maximumLength) throw std::bad_alloc();
  return {reinterpret_cast<const unsigned char*>(text.data()),
          static_cast<std::uint32_t>(text.size())};
}

}  // namespace Ombe
