#include "ombe_core/media_source.h"

namespace Ombe {

static_assert(sizeof(MediaSource) == sizeof(ByteString));

MediaSource::MediaSource(ByteString uri) : uri_(std::move(uri)) {}

MediaSource::~MediaSource() = default;

ByteString MediaSource::getUri() const { return uri_; }

}  // namespace Ombe
