// The container's map of streams; included where a format's container is instantiated.
#pragma once

#include <memory>
#include <utility>

#include "stream/overlay_stream.ipp"

namespace Ombe {

/// Publishes `list` as a new stream under a fresh UID of the host. The list is sorted in place; its
/// chunks are the stream's once the call returns, and still the caller's when it throws. A stream
/// under the same UID, should the host repeat itself, is withdrawn first.
template <typename Format>
void SubtitleParserTemplate<Format>::addStream(EntryList& list, const ByteString& name,
                                               const String& language, const String& region) {
  sortEntries(list);
  auto stream =
      std::make_unique<OverlayStream>(*this, this->host->newUID(), list, name, language, region);
  const UID uid = stream->streamUID();
  std::map<UID, OverlayStream*> added{{uid, stream.get()}};  // the last to need memory
  while (const auto replaced = streams.extract(uid)) retireStream(uid, *replaced.mapped());
  streams.merge(added);
  static_cast<void>(stream.release());
}

/// `factor` is the old rate over the new one.
template <typename Format>
void SubtitleParserTemplate<Format>::scaleTimes(double factor) {
  const Lock lock(mutex);
  for (const auto& [uid, stream] : streams) scaleEntries(stream->entries, factor);
}

template <typename Format>
void SubtitleParserTemplate<Format>::releaseStreams() {
  const Lock lock(mutex);
  while (!streams.empty()) {
    const auto first = streams.extract(streams.begin());
    retireStream(first.key(), *first.mapped());
  }
}

/// Releases the entries and has the host withdraw the stream, which may destroy it on the spot and
/// come back with further calls. The stream is out of the map by then.
template <typename Format>
void SubtitleParserTemplate<Format>::retireStream(UID uid, OverlayStream& stream) {
  const EntryList released = std::exchange(stream.entries, {});
  for (MediaChunk* entry : released) allocator->deleteChunk(entry);
  if (this->host != nullptr) this->host->withdrawStream(uid);
}

}  // namespace Ombe
