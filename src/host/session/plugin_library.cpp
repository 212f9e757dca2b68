#include "host/session/plugin_library.h"

#include <dlfcn.h>

#include <mutex>

#include "host/io/failure.h"

namespace Ombe {
namespace {

/// One at a time, so that whoever loads a binary that another thread loads finds it initialised.
/// The loader sees to that as well, but no tool that looks for races knows. What a binary's static
/// data throws leaves it half made with the loader's lock held, so that nothing is loaded after it.
void* load(const std::string& path) {
  static std::mutex loading;
  static bool isBroken = false;
  const std::lock_guard lock(loading);
  // Its declaration says that it throws nothing, and the compiler would believe that.
  void* (*volatile open)(const char*, int) = ::dlopen;
  try {
    if (!isBroken) return open(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  } catch (...) {
    isBroken = true;
  }
  throw Failure(Step::kLoad, "cannot load the plug-in: its static data threw");
}

}  // namespace

void PluginLibrary::Unload::operator()(void* handle) const { ::dlclose(handle); }

PluginLibrary::PluginLibrary(const std::string& path) : path_(path), handle_(load(path)) {
  if (handle_ == nullptr) {
    const char* reason = ::dlerror();
    throw Failure(Step::kLoad, "cannot load the plug-in: " +
                                   std::string(reason == nullptr ? path.c_str() : reason));
  }
  entryPoint_ = reinterpret_cast<EntryPoint>(::dlsym(handle_.get(), kEntryPointName));
  if (entryPoint_ == nullptr) {
    throw Failure(Step::kLoad, path + ": not a plug-in: it exports no " + kEntryPointName);
  }
}

PluginHandle PluginLibrary::create(PluginContext& context) const {
  Plugin* plugin = nullptr;
  const Status status = entryPoint_(&context, &plugin);
  PluginHandle handle(plugin);
  if (status != kSuccess || handle == nullptr) {
    throw Failure(Step::kLoad, path_ + ": the plug-in made no component");
  }
  return handle;
}

}  // namespace Ombe
