#include "ombe_core/media_source.h"

namespace Ombe {

MediaSource::MediaSource(ByteString uri) : uri_(std::move(uri)) {}

MediaSource::~MediaSource() = default;

ByteString MediaSource::getUri() const { return uri_; }

}  // namespace Ombe
