// The frame rate of a film.
#pragma once

#include <string>

#include "ombe_core/setting_value.h"

namespace Ombe {

struct FilmRate {
  Ratio rate;
  bool isAverage;       ///< its frames do not all last as long
  std::string program;  ///< that says so
};

/// Asks ffprobe, or else mediainfo. Throws Failure when neither is there, and when the file holds
/// no video that they know.
FilmRate filmRate(const std::string& film);

}  // namespace Ombe
