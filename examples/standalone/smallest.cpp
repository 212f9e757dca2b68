// The smallest plug-in: a component that offers no interface.
#include <ombe_core/plugin.h>

// NOLINTBEGIN(bugprone-reserved-identifier): the name that engines look up
struct Smallest final : Ombe::Plugin {
  using Plugin::Plugin;
  Ombe::Status getInterface(const Ombe::String& /*identifier*/, void** out) override {
    *out = nullptr;
    return Ombe::kUnknownInterface;
  }
};

extern "C" OMBE_API Ombe::Status __getPlugin(Ombe::PluginContext* context, Ombe::Plugin** out) {
  *out = new Smallest(context);
  return Ombe::kSuccess;
}
// NOLINTEND(bugprone-reserved-identifier)
