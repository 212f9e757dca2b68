#include "ombe_core/stream_interface.h"

#include <cstddef>

namespace Ombe {

// The offsets of a class with a table are conditionally supported; both compilers support them.
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
struct StreamInterfaceLayout {
  static_assert(offsetof(StreamInterface, lastChunkTime) == sizeof(void*) &&
                offsetof(StreamInterface, streamNumber_) == sizeof(void*) + 4);
  static_assert(offsetof(StreamInterface, containerUID_) == 2 * sizeof(void*) + 16 &&
                offsetof(StreamInterface, streamUID_) == 2 * sizeof(void*) + 24 &&
                sizeof(StreamInterface) == 3 * sizeof(void*) + 32);
};

StreamInterface::StreamInterface(UID containerUID, UID streamUID, StreamInterface* parent)
    : containerUID_(containerUID), streamUID_(streamUID), parent_(parent) {}

StreamInterface::~StreamInterface() = default;

std::int32_t StreamInterface::reservedSlot2() { return 0; }

bool StreamInterface::framerate(unsigned* /*numerator*/, unsigned* /*denominator*/) {
  return false;
}

std::int32_t StreamInterface::reservedSlot7() { return 0; }

StreamInterface* StreamInterface::getPrimaryTrack() { return parent_ == nullptr ? this : parent_; }

StreamInterface* StreamInterface::getAuxiliaryTracks(unsigned /*index*/) { return nullptr; }

std::int32_t StreamInterface::reservedSlot14() { return 0; }

std::uint32_t StreamInterface::getLastChunkTime() const { return lastChunkTime; }

bool StreamInterface::isEOS() const { return false; }

bool StreamInterface::setReadSpeed(std::int32_t speed) {
  readSpeed_ = speed;
  return true;
}

std::int32_t StreamInterface::readSpeed() const { return readSpeed_; }

void StreamInterface::setReadMode(StreamReadMode mode) { readMode_ = mode; }

StreamReadMode StreamInterface::readMode() const { return readMode_; }

void StreamInterface::setReadInterval(std::int32_t interval) { readInterval_ = interval; }

std::int32_t StreamInterface::getReadInterval() const { return readInterval_; }

bool StreamInterface::reservedSlot24(std::uint32_t /*argument*/) { return false; }

}  // namespace Ombe
