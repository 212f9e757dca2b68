#include "plugin/identifiers.h"

#include "ombe_core/component_identifiers.h"
#include "ombe_core/container_interface.h"
#include "ombe_core/subtitle_control_interface.h"

namespace Ombe {

const Identifiers identifiers{
    kContainerInterfaceId, kComponentInterfaceId,    kInputComponentId,
    kInputInterfaceId,     kSingleOutputComponentId, kMultipleOutputComponentId,
    kOutputComponentId,    kOutputInterfaceId,       kSubtitleControlInterfaceId,
};

}  // namespace Ombe
