// The way through a text that does not open.
#pragma once

#include <string>

#include "host/fix/repair.h"

namespace Ombe {

/// Takes every line into the result that can be kept or mended, and tells of the others. `known` is
/// the rate as a person knows it, or unset.
void mendLines(std::string text, FrameRate known, Repair& result);

}  // namespace Ombe
