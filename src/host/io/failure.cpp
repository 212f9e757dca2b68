#include "host/io/failure.h"

#include <iterator>

namespace Ombe {

const char* stepName(Step step) {
  constexpr const char* kNames[] = {"load", "load",     "read",    "convert", "probe",
                                    "open", "activate", "deliver", "write"};
  static_assert(std::size(kNames) == static_cast<std::size_t>(Step::kWrite) + 1);
  return kNames[static_cast<std::size_t>(step)];
}

}  // namespace Ombe
