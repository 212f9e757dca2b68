// Frame rates as people write them.
#pragma once

#include <optional>
#include <string_view>

#include "ombe_core/setting_value.h"

namespace Ombe {

/// "25", "23.976" (exactly 23976/1000) or "24000/1001". Zero parts are allowed, since they mean
/// something to the plug-in. Nothing for another form and for numbers that need more than 32 bits.
std::optional<Ratio> parseFrameRate(std::string_view text);

}  // namespace Ombe
