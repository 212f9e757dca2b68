// The container's map of streams; included where a format's container is instantiated.
#pragma once

#include <cmath>
#include <memory>
#include <utility>

#include "stream/overlay_stream.h"

namespace Ombe {

/// Publishes `list` as a new stream under a fresh UID of the host. The list is sorted in place; its
/// chunks are the stream's once the call returns, and still the caller's when it throws.
template <typename Format>
void SubtitleParserTemplate<Format>::addStream(EntryList& list, const ByteString& name,
                                               const String& language, const String& region) {
  sortEntries(list);
  auto stream =
      std::make_unique<OverlayStream>(*this, this->host->newUID(), list, name, language, region);
  const auto [slot, isFree] = streams.try_emplace(stream->streamUID(), nullptr);
  if (!isFree) retireStream(slot->first, *slot->second);
  slot->second = stream.release();
}

/// Does nothing for a factor that is not a finite number, as an unset rate gives.
template <typename Format>
void SubtitleParserTemplate<Format>::scaleTimes(double factor) {
  if (!std::isfinite(factor)) return;
  const Lock lock(mutex);
  for (const auto& [uid, stream] : streams) scaleEntries(stream->entries, factor);
}

template <typename Format>
void SubtitleParserTemplate<Format>::releaseStreams() {
  const Lock lock(mutex);
  for (const auto& [uid, stream] : streams) retireStream(uid, *stream);
  streams.clear();
}

/// Releases the entries and has the host withdraw the stream, which may destroy it on the spot.
template <typename Format>
void SubtitleParserTemplate<Format>::retireStream(UID uid, OverlayStream& stream) {
  const EntryList released = std::exchange(stream.entries, {});
  for (MediaChunk* entry : released) allocator->deleteChunk(entry);
  if (this->host != nullptr) this->host->withdrawStream(uid);
}

}  // namespace Ombe
