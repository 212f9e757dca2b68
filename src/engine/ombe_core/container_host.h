// The engine object that drives a container.
#pragma once

#include "ombe_core/setting_store.h"
#include "ombe_core/status.h"
#include "ombe_core/uid_list.h"

namespace Ombe {

class StreamInterface;

/// Given to a container by `attach`; owned by the engine and outlives every call that the container
/// makes on it. It is called on the thread that called the container or its stream, mostly while
/// the container holds its own lock, so that it waits for no other that is inside the plug-in.
/// Reserved slots are the engine's: plug-ins never call them.
class OMBE_API ContainerHost : public SettingStore {
 public:
  ~ContainerHost() override;

  /// Slot 4. Fresh on every call. Does not come back with the first getProgramUIDs.
  virtual UID newUID() = 0;
  virtual void reservedSlot5();
  /// Slot 6. "en", "en-US" or empty. Streams are not released from within: those that were not
  /// announced yet would be lost.
  virtual String preferredLanguage() = 0;
  virtual void reservedSlot7();
  /// Slot 8. Milliseconds to add to the entries' times; asked on the reading thread. The host may
  /// release the stream that is read, but destroys it after the read.
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
  /// again. The result is ignored. Streams are released from within only when all are announced,
  /// since one that the host does not own yet would be lost, and a stream that is opened from
  /// within is announced by an activation from within.
  virtual Status announceStream(StreamInterface* stream) = 0;
  /// Slot 23. The container has forgotten the stream and released its entries. The host destroys it
  /// if it was announced, once no thread is inside one of its operations; nobody may destroy one
  /// that never was. What is opened from within is withdrawn as well. The result is ignored.
  virtual Status withdrawStream(UID stream) = 0;
  /// Slot 24. The stream to show; `flag` is always 1. The result is ignored.
  virtual Status selectStream(UID stream, std::int32_t flag) = 0;
};

}  // namespace Ombe
