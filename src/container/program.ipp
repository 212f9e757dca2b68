// The container's one program; included where a format's container is instantiated.
#pragma once

#include <vector>

#include "container/stream_choice.h"
#include "container/subtitle_parser_template.h"
#include "ombe_core/stream_interface.h"

namespace Ombe {

/// The UID is fetched from the host once and kept for the life of the component.
template <typename Format>
UIDList SubtitleParserTemplate<Format>::getProgramUIDs() {
  UIDList list;
  if (programUID == kNoUID && this->host != nullptr) programUID = this->host->newUID();
  list.append(programUID);
  return list;
}

template <typename Format>
ByteString SubtitleParserTemplate<Format>::getProgramName(UID /*program*/) {
  return {};
}

template <typename Format>
Status SubtitleParserTemplate<Format>::activateProgram(UID program) {
  const Lock lock(mutex);
  if (subtitleController != nullptr) subtitleController->registerConsumer(this);
  if (program != programUID || this->host == nullptr) return kGeneralFailure;
  // A copy from the plug-in's own allocator: the component may outlive the host's.
  const String language = this->host->preferredLanguage();
  preferredLanguage = language;
  // Step by step, since the host may come back and release the streams while it is told of one.
  for (auto next = streams.begin(); next != streams.end();) {
    const auto [uid, stream] = *next;
    this->host->announceStream(stream);
    next = streams.upper_bound(uid);
  }
  if (!streams.empty()) this->host->selectStream(streamToSelect(), 1);
  return kSuccess;
}

template <typename Format>
Status SubtitleParserTemplate<Format>::deactivate(bool keepStreams) {
  // Without the lock: the controller may be waiting for a notification that wants it.
  if (subtitleController != nullptr) subtitleController->unregisterConsumer(this);
  if (!keepStreams) releaseStreams();
  return kSuccess;
}

template <typename Format>
UID SubtitleParserTemplate<Format>::streamToSelect() const {
  std::vector<StreamLanguage> candidates;
  candidates.reserve(streams.size());
  for (const auto& [uid, stream] : streams) {
    candidates.push_back({uid, view(stream->language), view(stream->region)});
  }
  return chooseStream(candidates, view(preferredLanguage));
}

}  // namespace Ombe
