// Files of other kinds, told by their first bytes.
#pragma once

#include <string_view>

namespace Ombe {

/// What a file that the plug-in does not recognise seems to be and what to do about it; empty for
/// no idea.
std::string_view foreignFormat(std::string_view bytes);

}  // namespace Ombe
