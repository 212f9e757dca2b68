// Whether the plug-in takes a file, and why.
#pragma once

#include <cstdint>
#include <string>

#include "host/check/findings.h"
#include "host/check/line_check.h"
#include "host/session/session.h"

namespace Ombe {

struct CheckReport {
  std::string file;  ///< as a person named it
  bool opens = false;
  std::string step;  ///< that failed; empty when the file opens
  std::uint64_t subtitles = 0;
  RateUse rate;
  std::string codePage;       ///< in use; empty for UTF-8
  bool hasSignature = false;  ///< the file itself states its code page
  Findings findings;
};

/// Asks the plug-in, whose answer decides, and reads the file at `path` for the reasons. Throws
/// Failure only when the plug-in cannot be loaded.
CheckReport examine(const std::string& file, const std::string& path, const SessionOptions& options,
                    std::size_t limit);

}  // namespace Ombe
