// Options about the film that subtitles are to fit.
#pragma once

#include "host/cli/command.h"
#include "host/session/session.h"
#include "host/session/sync.h"

namespace Ombe {

/// The command with these options, among those about sources. It runs only when they contradict
/// neither one another nor those of `session`. Both belong to the command.
Command withFilmTimes(Command command, FilmTimes& times, const SessionOptions& session);

}  // namespace Ombe
