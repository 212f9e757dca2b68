// From a path that a person gave to a source.
#pragma once

#include <string>

namespace Ombe {

/// "file://" and the absolute path, byte for byte: plug-ins do the escaping.
std::string sourceUri(const std::string& file);

/// Throws Failure saying what keeps the file from being read, or its path from being a URI.
void requireReadable(const std::string& file);

}  // namespace Ombe
