// A plug-in binary in memory, and where to find one.
#pragma once

#include <memory>
#include <string>

#include "ombe_core/plugin.h"

namespace Ombe {

struct ReleasePlugin {
  void operator()(Plugin* plugin) const { plugin->release(); }
};

/// Holds one count of a component.
using PluginHandle = std::unique_ptr<Plugin, ReleasePlugin>;

/// The component's interface of that identifier, part of it; null when it offers none.
template <typename Interface>
Interface* findInterface(Plugin& plugin, const char* identifier) {
  void* found = nullptr;
  if (plugin.getInterface(identifier, &found) != kSuccess) return nullptr;
  return static_cast<Interface*>(found);
}

/// Loads a plug-in binary and unloads it on destruction. Everything that came from the binary,
/// streams and chunks included, has to be gone by then. Loading one binary several times is cheap;
/// the objects may live on different threads.
class PluginLibrary {
 public:
  /// Throws Failure (kLoad) and leaves nothing loaded.
  explicit PluginLibrary(const std::string& path);

  /// A new component. Throws Failure (kLoad) and what the entry point throws.
  [[nodiscard]] PluginHandle create(PluginContext& context) const;

  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  struct Unload {
    void operator()(void* handle) const;
  };

  std::string path_;
  std::unique_ptr<void, Unload> handle_;
  EntryPoint entryPoint_ = nullptr;
};

/// Path of the plug-in to load: `given` (the binary, or the folder that it is in) unless empty;
/// else the first there is in the entries of OMBE_PLUGIN_PATH, the user's plug-in folder, and
/// `folder`, unless empty. Throws Failure (kFind) when there is none.
std::string findPlugin(const std::string& given, const std::string& folder);

}  // namespace Ombe
