// The engine object that drives a container.
#pragma once

#include "ombe_core/setting_store.h"
#include "ombe_core/status.h"
#include "ombe_core/uid_list.h"

namespace Ombe {

class StreamInterface;

/// Given to a container by `attach`; owned by the engine and outlives every call that the container
/// makes on it. Unless an operation says otherwise it is called on the engine's calling thread, and
/// the host must allow it while the container holds its own lock. Reserved slots are the engine's:
/// plug-ins never call them.
class OMBE_API ContainerHost : public SettingStore {
 public:
  ~ContainerHost() override;

  virtual UID newUID() = 0;  // slot 4; fresh on every call
  virtual void reservedSlot5();
  virtual String preferredLanguage() = 0;  // slot 6; "en", "en-US" or empty
  virtual void reservedSlot7();
  /// Slot 8. Milliseconds to add to the entries' times; asked on the reading thread. From within it
  /// the host may seek and deactivate, but the stream that is read must outlive the read.
  virtual double getTimeOffset() = 0;
  virtual void reservedSlot9();
  virtual void reservedSlot10();
  virtual void reservedSlot11();
  virtual void reservedSlot12();
  virtual void reservedSlot13();
  virtual void reservedSlot14();
  virtual void reservedSlot15();
  virtual void reservedSlot16();
  virtual void reservedSlot17();
  virtual void reservedSlot18();
  virtual void reservedSlot19();
  virtual void reservedSlot20();
  virtual void reservedSlot21();
  /// Slot 22. From here on the host owns the stream. Every activation announces the same streams
  /// again. The result is ignored. From within this and the two below, the host may activate and
  /// read. It may deactivate, too, when its controller's unregisterConsumer does not wait for
  /// notifications under way, one of which may wait for this thread; to release streams it waits
  /// until all are announced, since one that it does not own yet would be lost.
  virtual Status announceStream(StreamInterface* stream) = 0;
  /// Slot 23. The container has forgotten the stream and released its entries. The host destroys it
  /// if it was announced, once no thread is inside one of its operations; nobody may destroy one
  /// that never was. The result is ignored.
  virtual Status withdrawStream(UID stream) = 0;
  /// Slot 24. The stream to show; `flag` is always 1. The result is ignored.
  virtual Status selectStream(UID stream, std::int32_t flag) = 0;
};

}  // namespace Ombe
