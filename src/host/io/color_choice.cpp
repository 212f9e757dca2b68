#include "host/io/color_choice.h"

#include <unistd.h>

#include "host/io/environment.h"

namespace Ombe {

bool wantsColor(ColorMode mode, int descriptor) {
  switch (mode) {
    case ColorMode::kAlways:
      return true;
    case ColorMode::kNever:
      return false;
    case ColorMode::kAuto:
      break;
  }
  return environment("NO_COLOR").empty() && environment("TERM") != "dumb" &&
         ::isatty(descriptor) != 0;
}

}  // namespace Ombe
