// One source written in another format.
#pragma once

#include <string>
#include <vector>

namespace Ombe {

struct ExportOptions;

/// Writes the subtitles of `input` ("-" is standard input) to `output`. Returns remarks for the
/// person who asked. Throws Failure, and then the output is as it was. Any thread.
std::vector<std::string> exportFile(const std::string& input, const std::string& output,
                                    const ExportOptions& options);

}  // namespace Ombe
