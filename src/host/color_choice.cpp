#include "host/color_choice.h"

#include <unistd.h>

#include <cstdlib>
#include <string_view>

namespace Ombe {
namespace {

std::string_view environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string_view() : std::string_view(value);
}

}  // namespace

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
