// What the engine gives a plug-in at birth.
#pragma once

#include "ombe_core/export.h"
#include "ombe_core/kelm_string.h"

namespace Ombe {

/// Handed to __getPlugin, kept by the Plugin base, owned by the engine; outlives the component.
/// Slots 2 to 7 are the engine's: plug-ins never call them.
class OMBE_API PluginContext {
 public:
  PluginContext() = default;
  PluginContext(const PluginContext&) = delete;
  PluginContext& operator=(const PluginContext&) = delete;
  virtual ~PluginContext();  // slots 0 and 1

  virtual void reservedSlot2();
  virtual void reservedSlot3();
  virtual void reservedSlot4();
  virtual void reservedSlot5();
  virtual void reservedSlot6();
  virtual void reservedSlot7();
  /// Slot 8. Whether the engine can render text of the named format. Any thread.
  virtual bool supportsFormat(String formatName) = 0;
};

}  // namespace Ombe
