// The interface through which the engine drives a container.
#pragma once

#include <cstdint>

#include "ombe_core/export.h"
#include "ombe_core/format_requirement.h"
#include "ombe_core/kelm_string.h"
#include "ombe_core/status.h"
#include "ombe_core/uid_list.h"

namespace Ombe {

class ContainerHost;
class MediaSource;

inline constexpr char kContainerInterfaceId[] = "com.kelm.streamengine.interface.container";

/// Obtained by lookup of kContainerInterfaceId; part of the component, valid as long as it. Order
/// of calls: attach; probe and open; getProgramUIDs; activateProgram; the streams; deactivate.
/// Called on the engine's calling thread. `open`, `activateProgram`, the release by `deactivate`
/// and a change of the frame rate exclude each other and the operations of the container's streams,
/// and a change of the code page waits for none of them, so these may also come from other threads.
/// The queries may do so only while no thread is inside `open` or `activateProgram`, and the first
/// `getProgramUIDs` not at all. The last `release` comes when no call is under way, notifications
/// included. Whatever needs memory leaves by std::bad_alloc when there is none.
///
/// From within a call that the component makes on its host, controller, context or clock or on the
/// log sink, the same thread may call the component and its streams, also where this leads to the
/// same call again, except for `attach`, `setSubtitleController`, the last `release` and what that
/// call forbids. It may deactivate there only when its controller's `unregisterConsumer` does not
/// wait for notifications under way, one of which may wait for this thread.
class OMBE_API ContainerInterface {
 public:
  ContainerInterface() = default;
  ContainerInterface(const ContainerInterface&) = delete;
  ContainerInterface& operator=(const ContainerInterface&) = delete;
  virtual ~ContainerInterface();  // slots 0 and 1

  /// Slot 2. Once, before all others. The host is not owned and must outlive the component's use.
  virtual void attach(ContainerHost* host, UID uid);
  /// Slot 3. Whether the source is of this container's kind and the engine can show it. When only
  /// a format is missing, it is appended to `missing` (may be null).
  virtual bool probe(const MediaSource& source, std::int32_t reserved1, std::int32_t reserved2,
                     FormatRequirementList* missing) = 0;
  virtual void reservedSlot4(std::int32_t argument) = 0;
  /// Slot 5. Reads the source and publishes its streams. 0, or kGeneralFailure with no stream
  /// added. Needs a host.
  virtual Status open(const MediaSource& source) = 0;
  virtual Status reservedSlot6(std::int32_t argument) = 0;
  virtual ByteString getSourcePath() = 0;  // slot 7; local path of the opened source, or empty
  virtual UID getContainerUID() const;     // slot 8; as handed to attach
  virtual Status reservedSlot9(std::int32_t* a, std::int32_t* b);  // 0 into both; 0
  virtual Status close() = 0;                                      // slot 10
  virtual UIDList getProgramUIDs() = 0;  // slot 11; kNoUID as the only element before attach
  virtual ByteString getProgramName(UID program) = 0;  // slot 12
  /// Slot 13. Registers with the controller, whatever comes of it; announces the streams and
  /// selects one. kGeneralFailure for another program's UID. Needs a host.
  virtual Status activateProgram(UID program) = 0;
  /// Slot 14. Unless told to keep them, releases and withdraws the streams. One that was opened but
  /// never announced is withdrawn, too, and lost, so the program is activated before. 0.
  virtual Status deactivate(bool keepStreams) = 0;
  /// Slot 15. Bytes of the opened source; on failure `*size` is unchanged.
  virtual Status getFileSize(std::uint64_t* size) = 0;
  virtual std::int32_t findMediaTypeRank(const ByteString& name) = 0;  // slot 16; -1 when absent
  virtual std::uint32_t mediaTypeCount() = 0;                          // slot 17
  virtual ByteString mediaTypeAt(std::uint32_t index) = 0;        // slot 18; empty past the end
  virtual std::int32_t mediaTypeRankAt(std::uint32_t index) = 0;  // slot 19; 0 past the end

 protected:
  ContainerHost* host = nullptr;
  UID containerUID = 0;
  std::uint32_t attachState = 0;

  friend struct ContainerInterfaceLayout;
};

}  // namespace Ombe
