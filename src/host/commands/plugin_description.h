// What a plug-in says of itself.
#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <utility>
#include <vector>

namespace Ombe {

class Plugin;
class PluginLibrary;

struct PluginDescription {
  std::string path;
  std::uint32_t engineVersion;
  std::vector<std::string> interfaces;  ///< identifiers that the component answers
  std::vector<std::pair<std::string, std::int32_t>> mediaTypes;  ///< each with its rank
};

PluginDescription describePlugin(const std::string& path, Plugin& plugin);

/// Names of the text formats that the plug-in says it misses when it meets `file` in an engine that
/// shows none; empty when it does not recognise the file. Throws Failure.
std::vector<std::string> neededFormats(const PluginLibrary& library, const std::string& file);

/// Rows for people: a name, a colon, a value made visible.
void appendRow(std::string& out, const char* name, const std::string& value);
void appendText(std::string& out, const PluginDescription& plugin);
nlohmann::ordered_json toJson(const PluginDescription& plugin);

}  // namespace Ombe
