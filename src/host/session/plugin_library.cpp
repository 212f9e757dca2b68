#include "host/session/plugin_library.h"

#include <dlfcn.h>

#include <filesystem>
#include <mutex>
#include <string_view>
#include <system_error>
#include <vector>

#include "host/io/environment.h"
#include "host/io/failure.h"

namespace Ombe {
namespace {

namespace fs = std::filesystem;

constexpr char kPluginFile[] = "microdvd.so";
constexpr char kPluginFolder[] = "ombe";

/// A place is the binary itself or the folder that it is in.
fs::path binaryAt(const fs::path& place) {
  std::error_code ignored;
  return fs::is_directory(place, ignored) ? place / kPluginFile : place;
}

void appendEntries(std::string_view list, std::vector<fs::path>& places) {
  while (!list.empty()) {
    const std::size_t end = std::min(list.find(':'), list.size());
    if (end > 0) places.emplace_back(list.substr(0, end));
    list.remove_prefix(std::min(end + 1, list.size()));
  }
}

std::vector<fs::path> searchPlaces(const std::string& folder) {
  std::vector<fs::path> places;
  appendEntries(environment("OMBE_PLUGIN_PATH"), places);
  if (const std::string_view home = environment("HOME"); !home.empty()) {
    places.push_back(fs::path(home) / ".local/lib" / kPluginFolder);
  }
  if (!folder.empty()) places.emplace_back(folder);
  return places;
}

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

std::string findPlugin(const std::string& given, const std::string& folder) {
  // Absolute, since the loader looks elsewhere for a name without a slash.
  if (!given.empty()) return fs::absolute(binaryAt(given)).string();
  std::string looked;
  for (const fs::path& place : searchPlaces(folder)) {
    std::error_code ignored;
    const fs::path binary = binaryAt(place);
    if (fs::is_regular_file(binary, ignored)) return fs::absolute(binary).string();
    looked.append(looked.empty() ? "" : ", ").append(place.string());
  }
  throw Failure(Step::kFind, std::string("no plug-in found: no ") + kPluginFile + " in " + looked);
}

}  // namespace Ombe
