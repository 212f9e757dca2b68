// The interface through which the engine hands a container its subtitle controller.
#pragma once

#include "ombe_core/export.h"

namespace Ombe {

class SubtitleController;

inline constexpr char kSubtitleControlInterfaceId[] =
    "com.kelm.streamengine.interface.OmbeSubtitleControl";

/// Obtained by lookup of kSubtitleControlInterfaceId; part of the component, valid as long as it.
class OMBE_API SubtitleControlInterface {
 public:
  SubtitleControlInterface() = default;
  SubtitleControlInterface(const SubtitleControlInterface&) = delete;
  SubtitleControlInterface& operator=(const SubtitleControlInterface&) = delete;
  virtual ~SubtitleControlInterface();  // slots 0 and 1

  /// Slot 2. Repeatedly, but only while no stream is read and the component is not registered, so
  /// before `activateProgram` or after `deactivate`: the pointer is read by other threads, and a
  /// controller that is replaced earlier keeps a consumer that nobody takes back. The controller is
  /// not owned and must outlive the component or be replaced. Null is ignored: the previous
  /// controller stays.
  virtual void setSubtitleController(SubtitleController* controller) = 0;
};

}  // namespace Ombe
