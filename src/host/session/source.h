// From a path that a person gave to a source.
#pragma once

#include <cstdint>
#include <string>

namespace Ombe {

/// "file://" and the absolute path, byte for byte: plug-ins do the escaping.
std::string sourceUri(const std::string& file);

/// What one read gives at most on Linux, and a plug-in reads a file with one.
inline constexpr std::uintmax_t kLargestFile = 0x7FFFF000;

/// Throws Failure saying what keeps the file from being read, or its path from being a URI.
void requireReadable(const std::string& file);

/// What is behind a plug-in's log record of a read of the file that failed: the system's reason
/// where there still is one, else the record itself. Empty where nothing is: a head was asked for
/// and the file is shorter.
std::string reasonOfFailedRead(const std::string& file, const std::string& record);

}  // namespace Ombe
