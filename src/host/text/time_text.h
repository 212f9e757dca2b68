// Times as people type them.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace Ombe {

/// Milliseconds of "90", "1:30", "1:02:03.5" and the like; the parts before the last colon may have
/// any size. Nothing for another form, and beyond the last 32-bit millisecond.
std::optional<std::uint32_t> parseTime(std::string_view text);

}  // namespace Ombe
