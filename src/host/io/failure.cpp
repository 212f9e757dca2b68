#include "host/io/failure.h"

namespace Ombe {

const char* stepName(Step step) {
  switch (step) {
    case Step::kFind:
    case Step::kLoad:
      return "load";
    case Step::kRead:
      return "read";
    case Step::kConvert:
      return "convert";
    case Step::kProbe:
      return "probe";
    case Step::kOpen:
      return "open";
    case Step::kActivate:
      return "activate";
    case Step::kDeliver:
      return "deliver";
    case Step::kWrite:
      return "write";
  }
  return "";
}

}  // namespace Ombe
