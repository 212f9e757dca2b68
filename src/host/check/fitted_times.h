// Times of an open source, made those of a film.
#pragma once

#include <string>

#include "host/session/session.h"
#include "host/session/sync.h"

namespace Ombe {

/// Sets the frame rate and the time offset of a session that has the file at `path` open. Points of
/// which there is nothing to object. Throws Failure where the file's rate and the points make none
/// that can be set.
void fitTimes(Session& session, const std::string& path, const FilmTimes& times);

}  // namespace Ombe
