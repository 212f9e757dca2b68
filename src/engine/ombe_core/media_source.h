// A media source, named by its URI.
#pragma once

#include "ombe_core/export.h"
#include "ombe_core/kelm_string.h"

namespace Ombe {

/// Owned by the engine; containers only see it during a call.
class OMBE_API MediaSource {
 public:
  explicit MediaSource(ByteString uri);
  ~MediaSource();
  MediaSource(const MediaSource&) = delete;
  MediaSource& operator=(const MediaSource&) = delete;

  [[nodiscard]] ByteString getUri() const;

 private:
  ByteString uri_;
};

}  // namespace Ombe
