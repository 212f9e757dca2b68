// The stream through which the engine reads a container's subtitles.
#pragma once

#include "container/subtitle_parser_template.h"
#include "ombe_core/image_properties.h"
#include "ombe_core/media_chunk.h"
#include "ombe_core/stream_interface.h"
#include "ombe_core/time_source.h"
#include "stream/entry_list.h"
#include "stream/text_chunk.h"

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

}  // namespace Ombe
