#include "ombe_core/setting.h"

namespace Ombe {

Setting::Setting(MediaType mediaType, String group, String name)
    : mediaType_(mediaType), group_(std::move(group)), name_(std::move(name)) {}

Setting::~Setting() = default;

}  // namespace Ombe
