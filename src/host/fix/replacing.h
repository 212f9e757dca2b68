// A file that gives its place to its mended text.
#pragma once

#include <string>

namespace Ombe {

/// Keeps the file as NAME.orig and puts the text in its place. Throws Failure, also where there is
/// such a file already.
void replaceFile(const std::string& file, const std::string& text);

}  // namespace Ombe
