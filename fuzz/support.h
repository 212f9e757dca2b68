// What the fuzz targets share.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

namespace ombe_fuzz {

/// Ends the run when a property does not hold; the fuzzer keeps the input.
inline void require(bool holds, const char* property) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", property);
  std::abort();
}

/// An input: values are taken off its front, zeros when there is nothing left.
struct Input {
  Input(const std::uint8_t* data, std::size_t size)
      : rest(reinterpret_cast<const char*>(data), size) {}
  explicit Input(std::string_view bytes) : rest(bytes) {}

  std::string_view take(std::size_t count) {
    const std::string_view taken = rest.substr(0, count);
    rest.remove_prefix(taken.size());
    return taken;
  }
  template <typename Number = std::uint8_t>
  Number number() {
    Number value = 0;
    const std::string_view bytes = take(sizeof value);
    std::memcpy(&value, bytes.data(), bytes.size());
    return value;
  }

  std::string_view rest;
};

/// A copy of a text up to its first NUL that ends where its heap block ends, so that a sanitizer
/// sees every access beyond.
struct ExactText {
  explicit ExactText(std::string_view text)
      : size(std::min(text.find('\0'), text.size())), block(new char[size + 1]) {
    std::copy_n(text.begin(), size, block.get());
    block[size] = '\0';
  }
  [[nodiscard]] std::string_view view() const { return {block.get(), size}; }

  std::size_t size;
  std::unique_ptr<char[]> block;
};

}  // namespace ombe_fuzz
