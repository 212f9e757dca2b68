// Calls through an object's table by slot number, as a caller does that knows only the order of the
// slots. Two slots at the front of each table are the destructors.
#pragma once

#include <cstddef>

template <typename Result, typename Object, typename... Arguments>
__attribute__((no_sanitize("undefined"))) Result callSlot(Object* object, std::size_t slot,
                                                          Arguments... arguments) {
  using Function = Result (*)(Object*, Arguments...);
  return (*reinterpret_cast<Function**>(object))[slot](object, arguments...);
}
