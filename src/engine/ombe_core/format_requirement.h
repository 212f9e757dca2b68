// The record that names a text format.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Ombe {

/// 20 bytes on every platform.
struct FormatRequirement {
  char name[8];  ///< NUL-padded
  std::uint32_t words[3];

  /// A text format that is still without a name.
  static constexpr FormatRequirement text() { return {{}, {20, 4, 0}}; }
};

static_assert(sizeof(FormatRequirement) == 20 && offsetof(FormatRequirement, words) == 8);

/// Formats that a probe found missing; owned by the caller of the probe, who hands it in empty or
/// with what earlier probes appended.
using FormatRequirementList = std::vector<FormatRequirement>;

}  // namespace Ombe
