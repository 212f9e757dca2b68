// What the first bytes of a file say, before any plug-in is asked.
#pragma once

#include <cstddef>
#include <string_view>

namespace Ombe {

/// So many bytes tell.
inline constexpr std::size_t kHeadSize = 1024;

/// Whether the first line that is not empty begins with two frame numbers, as the plug-in demands.
/// Reads ASCII and what is ASCII but for a signature or NUL bytes: UTF-8, UTF-16, UTF-32 and most
/// texts in the other encodings that have a signature.
bool beginsAsMicroDVD(std::string_view head);

/// Whether a header line states a usable frame rate; of heads that beginsAsMicroDVD knows.
bool statesFrameRate(std::string_view head);

}  // namespace Ombe
