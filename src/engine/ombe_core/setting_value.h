// The tagged value of a setting.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "ombe_core/kelm_string.h"

namespace Ombe {

/// Frames per second as a fraction, as settings carry it.
struct Ratio {
  std::uint32_t numerator;
  std::uint32_t denominator;
};

/// A setting's value: 16 bytes on every platform, the tag at offset 0, the payload at offset 8. A
/// plain record: copying it copies the pointer of a string, never the string. Who owns the string
/// is said by the operation that carries the value (see SettingStore).
class SettingValue {
 public:
  SettingValue() = default;

  static SettingValue boolean(bool value) {
    SettingValue result(Tag::kBoolean);
    result.payload_.boolean = value ? 1 : 0;
    return result;
  }
  static SettingValue ratio(Ratio value) {
    SettingValue result(Tag::kRatio);
    result.payload_.ratio = {value.denominator, value.numerator};
    return result;
  }
  static SettingValue string(String* value) {
    SettingValue result(Tag::kString);
    result.payload_.string = value;
    return result;
  }

  /// Each accessor answers only for a value of its own tag.
  [[nodiscard]] std::optional<bool> asBoolean() const {
    if (tag_ != Tag::kBoolean) return std::nullopt;
    return payload_.boolean == 1;
  }
  [[nodiscard]] std::optional<Ratio> asRatio() const {
    if (tag_ != Tag::kRatio) return std::nullopt;
    return Ratio{payload_.ratio.numerator, payload_.ratio.denominator};
  }
  /// Null for a value of another tag, and for a string value without a string.
  [[nodiscard]] String* asString() const {
    return tag_ == Tag::kString ? payload_.string : nullptr;
  }
  /// True for the tag of strings, also when the pointer is null.
  [[nodiscard]] bool isString() const { return tag_ == Tag::kString; }

 private:
  enum class Tag : std::uint8_t { kNone = 0, kBoolean = 1, kRatio = 8, kString = 11 };

  explicit SettingValue(Tag tag) : tag_(tag) {}

  union Payload {
    std::uint8_t boolean;
    struct {
      std::uint32_t denominator;
      std::uint32_t numerator;
    } ratio;
    String* string;
  };

  Tag tag_ = Tag::kNone;
  [[maybe_unused]] std::uint8_t reserved_[7] = {};
  Payload payload_ = {};

  friend struct SettingValueLayout;
};

struct SettingValueLayout {
  static_assert(sizeof(SettingValue) == 16);
  static_assert(offsetof(SettingValue, tag_) == 0 && offsetof(SettingValue, payload_) == 8);
  static_assert(offsetof(SettingValue, payload_.ratio.denominator) == 8 &&
                offsetof(SettingValue, payload_.ratio.numerator) == 12);
};

}  // namespace Ombe
