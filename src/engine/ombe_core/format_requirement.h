// The record that names a text format.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Ombe {

/// 20 bytes on every platform. Text formats carry the words 20, 4 and 0.
struct FormatRequirement {
  char name[8];  ///< NUL-padded
  std::uint32_t words[3];

  static constexpr std::uint32_t kWord0 = 20;
  static constexpr std::uint32_t kWord1 = 4;
};

static_assert(sizeof(FormatRequirement) == 20 && offsetof(FormatRequirement, words) == 8);

/// Formats that a probe found missing; owned by the caller of the probe, who hands it in empty or
/// with what earlier probes appended.
using FormatRequirementList = std::vector<FormatRequirement>;

}  // namespace Ombe
