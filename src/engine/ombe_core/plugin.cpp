#include "ombe_core/plugin.h"

namespace Ombe {

// The offsets of a class with a table are conditionally supported; both compilers support them.
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
struct PluginLayout {
  static_assert(offsetof(Plugin, context_) == sizeof(void*) &&
                offsetof(Plugin, count_) == 2 * sizeof(void*) &&
                sizeof(Plugin) == 3 * sizeof(void*));
};

Plugin::Plugin(PluginContext* context) : context_(context) {}

Plugin::~Plugin() = default;

std::int32_t Plugin::retain() { return count_.fetch_add(1, std::memory_order_relaxed) + 1; }

std::int32_t Plugin::release() {
  // Acquire and release: whoever destroys the object sees what the other holders did to it.
  const std::int32_t left = count_.fetch_sub(1, std::memory_order_acq_rel) - 1;
  if (left == 0) delete this;
  return left;
}

std::int32_t Plugin::holdCount() const { return count_.load(std::memory_order_relaxed); }

const PluginInfo* Plugin::getPluginInfo() const {
  static constexpr PluginInfo kInfo{sizeof(PluginInfo), OMBE_CORE_VERSION_NUMBER};
  return &kInfo;
}

PluginContext* Plugin::getPluginContext() const { return context_; }

}  // namespace Ombe
