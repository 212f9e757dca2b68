#include "host/code_page.h"

#include <unicode/ucnv.h>

namespace Ombe {

bool isKnownCodePage(const std::string& name) {
  if (name.empty()) return true;
  UErrorCode status = U_ZERO_ERROR;
  UConverter* converter = ucnv_open(name.c_str(), &status);
  ucnv_close(converter);
  return U_SUCCESS(status);
}

}  // namespace Ombe
