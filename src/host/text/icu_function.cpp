#include "host/text/icu_function.h"

#include <dlfcn.h>
#include <unicode/uvernum.h>

#include <stdexcept>
#include <string>

namespace Ombe {

void* icuFunction(const char* library, const char* name) {
  const std::string file = std::string("libicu") + library + ".so." U_ICU_VERSION_SHORT;
  void* const loaded = ::dlopen(file.c_str(), RTLD_LAZY | RTLD_LOCAL);
  void* const function = loaded == nullptr ? nullptr : ::dlsym(loaded, name);
  if (function == nullptr) throw std::runtime_error(file + " is not installed");
  return function;
}

}  // namespace Ombe
