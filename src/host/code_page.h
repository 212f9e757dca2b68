// Names of code pages.
#pragma once

#include <string>

namespace Ombe {

/// Whether ICU has a converter of that name. The empty name, which asks for no conversion, counts.
bool isKnownCodePage(const std::string& name);

}  // namespace Ombe
