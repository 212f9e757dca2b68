#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

#include "host/io/environment.h"
#include "host/io/failure.h"
#include "host/session/plugin_library.h"

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

std::vector<fs::path> searchPlaces() {
  std::vector<fs::path> places;
  appendEntries(environment("OMBE_PLUGIN_PATH"), places);
  if (const std::string_view home = environment("HOME"); !home.empty()) {
    places.push_back(fs::path(home) / ".local/lib" / kPluginFolder);
  }
  std::error_code unknown;
  const fs::path program = fs::read_symlink("/proc/self/exe", unknown);
  if (unknown) return places;
  const fs::path prefix = program.parent_path().parent_path();
  for (const char* libraries : {OMBE_LIBRARY_FOLDER, "lib"}) {
    const fs::path place = prefix / libraries / kPluginFolder;
    if (places.empty() || places.back() != place) places.push_back(place);
  }
  return places;
}

}  // namespace

std::string findPlugin(const std::string& given) {
  // Absolute, since the loader looks elsewhere for a name without a slash.
  if (!given.empty()) return fs::absolute(binaryAt(given)).string();
  std::string looked;
  for (const fs::path& place : searchPlaces()) {
    std::error_code ignored;
    const fs::path binary = binaryAt(place);
    if (fs::is_regular_file(binary, ignored)) return fs::absolute(binary).string();
    looked.append(looked.empty() ? "" : ", ").append(place.string());
  }
  throw Failure(ExitCode::kNoPlugin, std::string("no plug-in found: no ") + kPluginFile + " in " +
                                         looked + "; name it with --plugin or OMBE_PLUGIN_PATH");
}

}  // namespace Ombe
