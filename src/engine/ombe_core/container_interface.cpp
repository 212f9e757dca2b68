#include "ombe_core/container_interface.h"

#include <cstddef>

namespace Ombe {

// The offsets of a class with a table are conditionally supported; both compilers support them.
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
struct ContainerInterfaceLayout {
  static_assert(offsetof(ContainerInterface, host) == sizeof(void*));
  static_assert(offsetof(ContainerInterface, containerUID) == 2 * sizeof(void*));
  static_assert(offsetof(ContainerInterface, attachState) == 2 * sizeof(void*) + 8);
  static_assert(sizeof(ContainerInterface) == 3 * sizeof(void*) + 8);
};

ContainerInterface::~ContainerInterface() = default;

void ContainerInterface::attach(ContainerHost* newHost, UID uid) {
  host = newHost;
  containerUID = uid;
  attachState = 0;
}

UID ContainerInterface::getContainerUID() const { return containerUID; }

Status ContainerInterface::reservedSlot9(std::int32_t* a, std::int32_t* b) {
  *a = 0;
  *b = 0;
  return kSuccess;
}

}  // namespace Ombe
