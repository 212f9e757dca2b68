// The frame rate that a file is played with where none is chosen, and its times made those of a
// film.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/session/session.h"
#include "host/session/sync.h"
#include "microdvd/lines/frame_rate.h"

namespace Ombe {

/// Unset where the file's own rate is to hold.
FrameRate chosenRate(const std::optional<Ratio>& rate);

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

/// Sets the frame rate and the time offset of a session that has the file at `path` open. Points of
/// which there is nothing to object. Throws Failure where the file's rate and the points make none
/// that can be set.
void fitTimes(Session& session, const std::string& path, const FilmTimes& times);

}  // namespace Ombe
