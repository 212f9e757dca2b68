// Functions of ICU, bound when the first is called: few files need one, and mapping ICU's
// libraries would take a third of the program's start.
#pragma once

#include <unicode/urename.h>

namespace Ombe {

/// The function of ICU's library `library` ("uc" or "i18n") that its binaries export as `name`,
/// of the version that the headers are of. Throws std::runtime_error where it is not installed.
/// The library stays loaded. Any thread.
void* icuFunction(const char* library, const char* name);

}  // namespace Ombe

// ICU's headers rename each function to one that carries the version: only macros see that name.
#define OMBE_ICU_NAME_OF(name) #name
#define OMBE_ICU_NAME(name) OMBE_ICU_NAME_OF(name)
/// ICU's `function`, looked up once in each place that calls it.
#define OMBE_ICU(library, function)                                    \
  ([] {                                                                \
    static const auto found = reinterpret_cast<decltype(&::function)>( \
        ::Ombe::icuFunction(library, OMBE_ICU_NAME(function)));        \
    return found;                                                      \
  }())
