#include "host/io/color_choice.h"

#include <unistd.h>

#include "host/io/environment.h"

namespace Ombe {

bool wantsColor(ColorMode mode, int descriptor) {
  if (mode != ColorMode::kAuto) return mode == ColorMode::kAlways;
  return environment("NO_COLOR").empty() && environment("TERM") != "dumb" &&
         ::isatty(descriptor) != 0;
}

ColorDepth terminalColorDepth(std::string_view colorTerm, std::string_view term) {
  if (colorTerm == "truecolor" || colorTerm == "24bit" || term.ends_with("-direct")) {
    return ColorDepth::kTrue;
  }
  return term.find("256color") != std::string_view::npos ? ColorDepth::k256 : ColorDepth::k16;
}

}  // namespace Ombe
