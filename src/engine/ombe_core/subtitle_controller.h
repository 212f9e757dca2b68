// The engine object with which subtitle containers register for setting changes.
#pragma once

#include "ombe_core/setting_store.h"

namespace Ombe {

class SettingConsumer;

/// Handed in through SubtitleControlInterface; owned by the engine. It keeps the registered
/// consumers, does not own them, and calls each one's `settingChanged` after a setting was stored,
/// without holding a lock of its own. Slots 4 to 12 are the engine's: plug-ins never call them.
class OMBE_API SubtitleController : public SettingStore {
 public:
  ~SubtitleController() override;

  virtual void reservedSlot4();
  virtual void reservedSlot5();
  virtual void reservedSlot6();
  virtual void reservedSlot7();
  virtual void reservedSlot8();
  virtual void reservedSlot9();
  virtual void reservedSlot10();
  virtual void reservedSlot11();
  virtual void reservedSlot12();
  /// Slot 13. Registering twice is registering once. Plug-ins ignore the result. Called while the
  /// container holds its lock, before it announces its streams, so none are released from within.
  virtual bool registerConsumer(SettingConsumer* consumer) = 0;
  /// Slot 14. After it returns no new notification begins. Plug-ins ignore the result and call it
  /// without a lock of their own, so that it may wait for notifications under way.
  virtual bool unregisterConsumer(SettingConsumer* consumer) = 0;
};

}  // namespace Ombe
