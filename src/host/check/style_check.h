// Style codes that nobody translates.
#pragma once

#include <cstdint>
#include <string>

#include "host/check/findings.h"

namespace Ombe {

/// Adds the codes that will be shown as text, and the slashes before lines other than the first.
/// `text` is the entry's text with its lines separated by line feeds, `line` what to show.
void checkStyle(const std::string& text, std::uint64_t number, const std::string& line,
                Findings& findings);

}  // namespace Ombe
