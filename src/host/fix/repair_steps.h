// The two ways through a text: line by line as it is, or mending.
#pragma once

#include <string>

#include "host/fix/repair.h"

namespace Ombe {

/// Takes a text that opens into the result just as it is, and names what is less than it seems.
void keepLines(const std::string& text, Repair& result);

/// Takes every line into the result that can be kept or mended, and tells of the others. `known` is
/// the rate as a person knows it, or unset.
void mendLines(std::string text, FrameRate known, Repair& result);

}  // namespace Ombe
