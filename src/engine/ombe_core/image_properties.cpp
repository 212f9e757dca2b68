#include "ombe_core/image_properties.h"

namespace Ombe {

ImageProperties::ImageProperties() = default;

ImageProperties::~ImageProperties() = default;

void ImageProperties::setFrameSize(std::uint32_t width, std::uint32_t height) {
  width_ = width;
  height_ = height;
}

}  // namespace Ombe
