// MicroDVD files to measure with.
#pragma once

#include <cstddef>
#include <string>

namespace ombe_bench {

enum class Encoding { kUtf8, kWindows1250, kUtf16 };  // UTF-16: little-endian, with its signature

/// A header line that states 25 frames per second and `count` subtitles in the order of their
/// times: a third with two lines, one in twelve with a style code, about 60 bytes a line, some
/// letters outside ASCII. Always the same text for the same arguments. All times fit in 31 bits of
/// milliseconds for up to 1.4 million subtitles.
std::string makeSubtitles(std::size_t count, Encoding encoding = Encoding::kUtf8);

}  // namespace ombe_bench
