// Construction of the component and lookup of its interfaces.
#include "microdvd/microdvd_container.h"
#include "plugin/identifiers.h"

namespace Ombe {

MicroDVDContainer::MicroDVDContainer(PluginContext* context)
    : Plugin(context),
      mediaTypeRanks{{toByteString("text/x-sub"), 1}, {toByteString("text/plain"), 1}} {}

MicroDVDContainer::~MicroDVDContainer() = default;

Status MicroDVDContainer::getInterface(const String& identifier, void** out) {
  *out = nullptr;
  if (identifier == identifiers.containerInterface) {
    *out = static_cast<ContainerInterface*>(this);
  } else if (identifier == identifiers.subtitleControlInterface) {
    *out = static_cast<SubtitleControlInterface*>(this);
  } else {
    return kUnknownInterface;
  }
  return kSuccess;
}

}  // namespace Ombe
