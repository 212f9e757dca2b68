#include "host/session/host_container.h"

namespace Ombe {

StreamInterface* HostContainer::selectedStream() const {
  const auto found = streams_.find(selected_);
  return found == streams_.end() ? nullptr : found->second.get();
}

UID HostContainer::newUID() {
  static std::atomic<UID> next{1};
  return next.fetch_add(1, std::memory_order_relaxed);
}

Status HostContainer::announceStream(StreamInterface* stream) {
  if (stream == nullptr) return kGeneralFailure;
  // The slot is made first: when that fails the stream is not ours yet.
  std::unique_ptr<StreamInterface>& slot = streams_[stream->streamUID()];
  if (slot.get() == stream) return kSuccess;
  slot.reset(stream);
  stream->setStreamNumber(static_cast<std::int32_t>(streams_.size()) - 1);
  return kSuccess;
}

Status HostContainer::withdrawStream(UID stream) {
  return streams_.erase(stream) == 0 ? kGeneralFailure : kSuccess;
}

Status HostContainer::selectStream(UID stream, std::int32_t /*flag*/) {
  if (!streams_.contains(stream)) return kGeneralFailure;
  selected_ = stream;
  return kSuccess;
}

}  // namespace Ombe
