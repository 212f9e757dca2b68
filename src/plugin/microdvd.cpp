// The MicroDVD module: its one symbol, the construction of its component and the lookup of its
// interfaces.
#include "microdvd/microdvd_container.h"
#include "ombe_core/component_identifiers.h"

namespace Ombe {
namespace {

/// The engine's identifiers as strings, built when the module is loaded and read-only until its
/// end. The lookup answers the first and the last; the others complete the vocabulary.
const struct {
  String containerInterface = kContainerInterfaceId;
  String componentInterface = kComponentInterfaceId;
  String inputComponent = kInputComponentId;
  String inputInterface = kInputInterfaceId;
  String singleOutputComponent = kSingleOutputComponentId;
  String multipleOutputComponent = kMultipleOutputComponentId;
  String outputComponent = kOutputComponentId;
  String outputInterface = kOutputInterfaceId;
  String subtitleControlInterface = kSubtitleControlInterfaceId;
} identifiers;

}  // namespace

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

extern "C" OMBE_API Ombe::Status __getPlugin(  // NOLINT(bugprone-reserved-identifier)
    Ombe::PluginContext* context, Ombe::Plugin** out) {
  *out = new Ombe::MicroDVDContainer(context);
  return Ombe::kSuccess;
}
