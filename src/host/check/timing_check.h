// Times that make no sense, though they play.
#pragma once

#include <vector>

#include "host/check/findings.h"
#include "host/check/line_check.h"

namespace Ombe {

/// Adds subtitles that end before they start, that stay longer than 20 seconds, and that begin
/// before an earlier one has ended.
void checkTiming(std::vector<TimedLine> subtitles, Findings& findings);

}  // namespace Ombe
