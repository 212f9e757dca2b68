// Description of the frame that an overlay is laid out for.
#pragma once

#include <cstdint>

#include "ombe_core/export.h"

namespace Ombe {

class OMBE_API ImageProperties {
 public:
  ImageProperties();
  // Exported, hence neither inline nor trivial.
  ~ImageProperties();  // NOLINT(performance-trivially-destructible)
  ImageProperties(const ImageProperties&) = delete;
  ImageProperties& operator=(const ImageProperties&) = delete;

  /// Pixels.
  void setFrameSize(std::uint32_t width, std::uint32_t height);
  [[nodiscard]] std::uint32_t frameWidth() const { return width_; }
  [[nodiscard]] std::uint32_t frameHeight() const { return height_; }

 private:
  std::uint32_t width_ = 0;
  std::uint32_t height_ = 0;
};

static_assert(sizeof(ImageProperties) == 8);

}  // namespace Ombe
