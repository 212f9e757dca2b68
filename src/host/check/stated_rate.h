// The frame rate of a file that is played without a chosen one.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "microdvd/lines/frame_rate.h"

namespace Ombe {

class Session;

struct FileRate {
  FrameRate rate;
  bool isStated;  ///< by a header line of the file, else it is the default
};

/// What a header line in the decoded text states; unset where none does.
FrameRate statedRate(std::string_view text);

/// Nothing when the plug-in's format has no such line. Looks at the beginning of the file alone,
/// which the session has open, and not even at that when the path is empty.
std::optional<FileRate> fileRate(Session& session, const std::string& path);

/// "25 fps (stated)", "23.976 fps (default)".
std::string rateText(const FileRate& rate);

}  // namespace Ombe
