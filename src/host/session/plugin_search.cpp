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

std::vector<fs::path> searchPlaces(const std::string& folder) {
  std::vector<fs::path> places;
  appendEntries(environment("OMBE_PLUGIN_PATH"), places);
  if (const std::string_view home = environment("HOME"); !home.empty()) {
    places.push_back(fs::path(home) / ".local/lib" / kPluginFolder);
  }
  if (!folder.empty()) places.emplace_back(folder);
  return places;
}

}  // namespace

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
