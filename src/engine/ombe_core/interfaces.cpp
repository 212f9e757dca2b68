// Destructors and reserved slots of the interfaces that the engine implements. They anchor each
// class's table in this library.
#include "ombe_core/container_host.h"
#include "ombe_core/plugin_context.h"
#include "ombe_core/setting_consumer.h"
#include "ombe_core/subtitle_control_interface.h"
#include "ombe_core/subtitle_controller.h"
#include "ombe_core/time_source.h"

namespace Ombe {

SettingStore::~SettingStore() = default;
SettingConsumer::~SettingConsumer() = default;
SubtitleControlInterface::~SubtitleControlInterface() = default;
TimeSource::~TimeSource() = default;

ContainerHost::~ContainerHost() = default;
void ContainerHost::reservedSlot5() {}
void ContainerHost::reservedSlot7() {}
void ContainerHost::reservedSlot9() {}
void ContainerHost::reservedSlot10() {}
void ContainerHost::reservedSlot11() {}
void ContainerHost::reservedSlot12() {}
void ContainerHost::reservedSlot13() {}
void ContainerHost::reservedSlot14() {}
void ContainerHost::reservedSlot15() {}
void ContainerHost::reservedSlot16() {}
void ContainerHost::reservedSlot17() {}
void ContainerHost::reservedSlot18() {}
void ContainerHost::reservedSlot19() {}
void ContainerHost::reservedSlot20() {}
void ContainerHost::reservedSlot21() {}

SubtitleController::~SubtitleController() = default;
void SubtitleController::reservedSlot4() {}
void SubtitleController::reservedSlot5() {}
void SubtitleController::reservedSlot6() {}
void SubtitleController::reservedSlot7() {}
void SubtitleController::reservedSlot8() {}
void SubtitleController::reservedSlot9() {}
void SubtitleController::reservedSlot10() {}
void SubtitleController::reservedSlot11() {}
void SubtitleController::reservedSlot12() {}

PluginContext::~PluginContext() = default;
void PluginContext::reservedSlot2() {}
void PluginContext::reservedSlot3() {}
void PluginContext::reservedSlot4() {}
void PluginContext::reservedSlot5() {}
void PluginContext::reservedSlot6() {}
void PluginContext::reservedSlot7() {}

}  // namespace Ombe
