// Environment variables.
#pragma once

#include <cstdlib>
#include <string_view>

namespace Ombe {

/// Empty when it is not set. Valid until the environment is changed, which this program never does.
inline std::string_view environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string_view() : std::string_view(value);
}

}  // namespace Ombe
