// One source written in another format.
#pragma once

#include <string>

namespace Ombe {

struct ExportOptions;

/// Writes the subtitles of `input` ("-" is standard input) to `output`. Returns a remark for the
/// person who asked, or nothing. Throws Failure, and then the output is as it was. Any thread.
std::string exportFile(const std::string& input, const std::string& output,
                       const ExportOptions& options);

}  // namespace Ombe
