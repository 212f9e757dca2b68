// The stream through which the engine reads a container's subtitles.
#pragma once

#include <algorithm>
#include <cstring>

#include "container/subtitle_parser_template.h"
#include "ombe_core/image_properties.h"
#include "ombe_core/logger.h"
#include "ombe_core/media_chunk.h"
#include "ombe_core/stream_interface.h"
#include "ombe_core/time_source.h"
#include "stream/entries/due_time.h"
#include "stream/entries/entry_list.h"
#include "stream/entries/entry_search.h"
#include "stream/entries/text_chunk.h"

namespace Ombe {

/// Serves one sorted entry list. A read hands out a new chunk with a copy of the current entry's
/// text when the clock has come close to it. Made by the container, owned by the host once
/// announced. Everything that reads or moves the position holds the container's mutex, so the
/// container must outlive the stream's use.
template <typename Format>
class SubtitleParserTemplate<Format>::OverlayStream : public StreamInterface {
 public:
  OverlayStream(SubtitleParserTemplate& parser, UID streamId, const EntryList& list,
                const ByteString& streamName, const String& streamLanguage,
                const String& streamRegion);
  ~OverlayStream() override;

  std::int32_t reservedSlot2() override { return 0; }
  bool getStreamInfo(ByteString* nameOut, String* languageOut, String* regionOut) override;
  const FormatRequirement* getFormat() override { return &format; }
  const ImageProperties* getImageProperties() override { return &imageProperties; }
  std::int32_t reservedSlot7() override { return 320; }
  Status setTimeSource(TimeSource* clock) override;
  Status resetStream() override;
  Status getNextChunkTime(std::uint32_t reserved, std::uint32_t time, std::uint32_t* out) override;
  Status seekStream(std::uint32_t time, std::uint32_t* out, bool flag) override;
  std::int32_t reservedSlot14() override { return 0; }
  Status readStream(MediaChunk** out) override;
  bool setReadSpeed(std::int32_t speed) override;
  bool reservedSlot24(std::uint32_t argument) override;

 private:
  friend class SubtitleParserTemplate;  // rescales and releases the entries

  SubtitleParserTemplate& owner() const { return static_cast<SubtitleParserTemplate&>(*container); }
  bool forward() const { return this->readSpeed() > 0; }
  MediaChunk* currentEntry() const;
  OwnedChunk copyEntry(MediaChunk& entry) const;
  void logSeek(std::int32_t found) const;

  ContainerInterface* container;
  TimeSource* timeSource = nullptr;
  FormatRequirement format = FormatRequirement::text();
  ByteString name;
  String language;
  String region;
  EntryList entries;
  std::int32_t index = 0;
  ImageProperties imageProperties;
};

template <typename Format>
SubtitleParserTemplate<Format>::OverlayStream::OverlayStream(SubtitleParserTemplate& parser,
                                                             UID streamId, const EntryList& list,
                                                             const ByteString& streamName,
                                                             const String& streamLanguage,
                                                             const String& streamRegion)
    : StreamInterface(parser.getContainerUID(), streamId, nullptr),
      container(&parser),
      name(streamName),
      language(streamLanguage),
      region(streamRegion),
      entries(list) {
  this->setStreamUID(streamId);
  parser.defaultCodePage(format.name);
  StreamInterface::setReadSpeed(1000);
  imageProperties.setFrameSize(640, 480);
}

template <typename Format>
SubtitleParserTemplate<Format>::OverlayStream::~OverlayStream() = default;

template <typename Format>
bool SubtitleParserTemplate<Format>::OverlayStream::getStreamInfo(ByteString* nameOut,
                                                                  String* languageOut,
                                                                  String* regionOut) {
  const auto give = [](const auto& stored, auto* out) {
    if (out == nullptr || stored.empty()) return false;
    *out = stored;
    return true;
  };
  const bool gaveName = give(name, nameOut);
  const bool gaveLanguage = give(language, languageOut);
  const bool gaveRegion = give(region, regionOut);
  return gaveName || gaveLanguage || gaveRegion;
}

template <typename Format>
Status SubtitleParserTemplate<Format>::OverlayStream::setTimeSource(TimeSource* clock) {
  const Lock lock(owner().mutex);
  if (clock == nullptr) return kNothingDue;
  timeSource = clock;
  return kSuccess;
}

template <typename Format>
Status SubtitleParserTemplate<Format>::OverlayStream::resetStream() {
  const Lock lock(owner().mutex);
  index = forward() ? 0 : entries.count() - 1;
  return kSuccess;
}

template <typename Format>
Status SubtitleParserTemplate<Format>::OverlayStream::getNextChunkTime(std::uint32_t /*reserved*/,
                                                                       std::uint32_t time,
                                                                       std::uint32_t* out) {
  const Lock lock(owner().mutex);
  if (out == nullptr) return kGeneralFailure;
  if (entries.empty()) {
    *out = time;
    return kSuccess;
  }
  if (this->readSpeed() == 0) return kGeneralFailure;
  *out = forward() ? nextTimeForward(entries, time) : nextTimeBackward(entries, time);
  return kSuccess;
}

template <typename Format>
Status SubtitleParserTemplate<Format>::OverlayStream::seekStream(std::uint32_t time,
                                                                 std::uint32_t* out,
                                                                 bool /*flag*/) {
  const Lock lock(owner().mutex);
  if (entries.empty()) {
    if (out != nullptr) *out = time;
    return kSuccess;
  }
  if (this->readSpeed() == 0) return kGeneralFailure;
  const SeekTarget target = forward() ? seekForward(entries, time) : seekBackward(entries, time);
  logSeek(target.index);  // before the position moves, as in readStream
  index = target.index;
  if (out != nullptr) *out = target.time;
  return kSuccess;
}

template <typename Format>
void SubtitleParserTemplate<Format>::OverlayStream::logSeek(std::int32_t found) const {
  if (entries.holds(found)) {
    Logger::instance().log("Container", "seekStream", 723, "Subtitle Stream: seeked to %d",
                           static_cast<int>(entries[found].timestamp));
  } else {
    Logger::instance().log("Container", "seekStream", 725, "Subtitle Stream: seeked to %s",
                           forward() ? "end" : "beginning");
  }
}

/// The entry to deliver next, or null at the end of the direction, on a pause and whenever the
/// index, left over from the other direction, lies outside the list.
template <typename Format>
MediaChunk* SubtitleParserTemplate<Format>::OverlayStream::currentEntry() const {
  return this->readSpeed() != 0 && entries.holds(index) ? &entries[index] : nullptr;
}

/// A new chunk with the entry's text in UTF-8 (or, where that cannot be had, as it is stored).
template <typename Format>
OwnedChunk SubtitleParserTemplate<Format>::OverlayStream::copyEntry(MediaChunk& entry) const {
  std::unique_ptr<unsigned char[]> copy;
  std::uint32_t length = 0;
  {
    const ChunkAccess access(entry);
    ByteString converted;
    const bool isConverted =
        owner().convertEntryText(access.bytes(), entry.bufferSize(), converted);
    const unsigned char* text = isConverted ? converted.data() : access.bytes();
    length = isConverted ? converted.length() : entry.bufferSize();
    copy.reset(new unsigned char[length]);
    if (length != 0) std::memcpy(copy.get(), text, length);
  }
  return createTextChunk(*owner().allocator, std::move(copy), length);
}

template <typename Format>
Status SubtitleParserTemplate<Format>::OverlayStream::readStream(MediaChunk** out) {
  const Lock lock(owner().mutex);
  if (out == nullptr) return kGeneralFailure;
  *out = nullptr;
  if (timeSource == nullptr) return kNothingDue;
  const std::int32_t now = timeSource->currentTime();
  if (now < 0) return kNothingDue;
  if (currentEntry() == nullptr) return kSuccess;
  const std::int32_t offset = owner().mediaTimeOffset();
  MediaChunk* entry = currentEntry();  // the host may have come back and released it
  if (entry == nullptr) return kSuccess;
  if (!isDue(shiftedTime(entry->timestamp, offset), now)) return kNothingDue;

  OwnedChunk chunk = copyEntry(*entry);
  chunk->timestamp = shiftedTime(entry->timestamp, offset);
  chunk->duration = entry->duration;
  // Logged before the position moves: should the log fail for want of memory, nothing has happened.
  Logger::instance().log("Subtitle", "readStream", 795,
                         "PARSED(Sub=%i): timestamp=%d duration=%d mediatime=%d",
                         this->streamNumber(), static_cast<int>(chunk->timestamp),
                         static_cast<int>(chunk->duration), timeSource->currentTime());
  index += forward() ? 1 : -1;
  this->lastChunkTime = endTime(*chunk);
  *out = chunk.release();
  return kSuccess;
}

template <typename Format>
bool SubtitleParserTemplate<Format>::OverlayStream::setReadSpeed(std::int32_t speed) {
  const Lock lock(owner().mutex);
  if (speed == this->readSpeed()) return true;
  if (!entries.empty()) {
    const MediaChunk& entry = entries[std::clamp(index, 0, entries.count() - 1)];
    seekStream(speed < 0 ? endTime(entry) : entry.timestamp, nullptr, true);
  }
  return StreamInterface::setReadSpeed(speed);
}

template <typename Format>
bool SubtitleParserTemplate<Format>::OverlayStream::reservedSlot24(std::uint32_t argument) {
  return owner().reservedSlot21(static_cast<std::int32_t>(argument));
}

}  // namespace Ombe
