// A stream of timed chunks, as the engine reads it.
#pragma once

#include <cstdint>

#include "ombe_core/export.h"
#include "ombe_core/format_requirement.h"
#include "ombe_core/kelm_string.h"
#include "ombe_core/status.h"
#include "ombe_core/uid_list.h"

namespace Ombe {

class ImageProperties;
class MediaChunk;
class TimeSource;

enum class StreamReadMode : std::int32_t { kNormal = 0 };

/// 25 slots. Made by a container, owned by the host from `announceStream` until the container
/// withdraws it. Times are unsigned milliseconds on the entries' own time line unless stated
/// otherwise. The operations that move or read the position, or set the clock or the speed, may be
/// called from any thread (the container serialises them). The others take no lock and are not
/// called while another thread is inside an operation that sets what they tell.
class OMBE_API StreamInterface {
 public:
  StreamInterface(UID containerUID, UID streamUID, StreamInterface* parent);
  StreamInterface(const StreamInterface&) = delete;
  StreamInterface& operator=(const StreamInterface&) = delete;
  virtual ~StreamInterface();  // slots 0 and 1

  virtual std::int32_t reservedSlot2();
  /// Slot 3. Frames per second of a video stream; false, outputs untouched, for any other.
  virtual bool framerate(unsigned* numerator, unsigned* denominator);
  /// Slot 4. Copies what is known of name, language and region into the outputs that are given
  /// (null is allowed) and leaves the others alone; true when at least one was written.
  virtual bool getStreamInfo(ByteString* name, String* language, String* region) = 0;
  virtual const FormatRequirement* getFormat() = 0;         // slot 5; the stream's
  virtual const ImageProperties* getImageProperties() = 0;  // slot 6; the stream's
  virtual std::int32_t reservedSlot7();
  virtual StreamInterface* getPrimaryTrack();  // slot 8; the parent, or else itself
  virtual StreamInterface* getAuxiliaryTracks(unsigned index);  // slot 9; null past the last
  /// Slot 10. The clock is not owned and must outlive the stream. 0, or -1 for null, which leaves
  /// the previous clock.
  virtual Status setTimeSource(TimeSource* clock) = 0;
  virtual Status resetStream() = 0;  // slot 11; back to the first entry of the direction; 0
  /// Slot 12. Forward: start of the first entry at or after `time`, or else the end of the last
  /// one. Backward: start of the last entry that ended before `time`, or else 1 ms before the first
  /// one. Without entries `time` itself. kGeneralFailure without `out`, and on a pause with
  /// entries.
  virtual Status getNextChunkTime(std::uint32_t reserved, std::uint32_t time,
                                  std::uint32_t* out) = 0;
  /// Slot 13. Moves to the entry of that time; `out`, when given, receives where it went, or `time`
  /// without entries. On a pause with entries kGeneralFailure, and nothing moves.
  virtual Status seekStream(std::uint32_t time, std::uint32_t* out, bool flag) = 0;
  virtual std::int32_t reservedSlot14();
  /// Slot 15. 0 with a chunk that belongs to the caller; 0 with null at the end and on a pause; -1
  /// with null while nothing is due, and in any case without a clock and while its time is
  /// negative; kGeneralFailure without `out`.
  virtual Status readStream(MediaChunk** out) = 0;
  virtual std::uint32_t getLastChunkTime() const;  // slot 16; end of the chunk delivered last, ms
  virtual bool isEOS() const;                      // slot 17; false: the end shows in the reads
  /// Slot 18. 1000 is normal speed, negative is backward, 0 a pause. True when accepted.
  virtual bool setReadSpeed(std::int32_t speed);
  virtual std::int32_t readSpeed() const;               // slot 19
  virtual void setReadMode(StreamReadMode mode);        // slot 20
  virtual StreamReadMode readMode() const;              // slot 21
  virtual void setReadInterval(std::int32_t interval);  // slot 22; milliseconds
  virtual std::int32_t getReadInterval() const;         // slot 23
  virtual bool reservedSlot24(std::uint32_t argument);

  [[nodiscard]] UID streamUID() const { return streamUID_; }
  [[nodiscard]] UID containerUID() const { return containerUID_; }

  /// Position of the stream among those of its host, for log records; set by the host.
  [[nodiscard]] std::int32_t streamNumber() const { return streamNumber_; }
  void setStreamNumber(std::int32_t number) { streamNumber_ = number; }

 protected:
  void setStreamUID(UID uid) { streamUID_ = uid; }

  std::uint32_t lastChunkTime = 0;

 private:
  std::int32_t streamNumber_ = 0;
  std::int32_t readSpeed_ = 1000;
  StreamReadMode readMode_ = StreamReadMode::kNormal;
  std::int32_t readInterval_ = 0;
  UID containerUID_;
  UID streamUID_;
  StreamInterface* parent_;

  friend struct StreamInterfaceLayout;
};

}  // namespace Ombe
