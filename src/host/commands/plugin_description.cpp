#include "host/commands/plugin_description.h"

#include <fmt/core.h>

#include <cstring>
#include <nlohmann/json.hpp>

#include "host/session/host_container.h"
#include "host/session/plugin_library.h"
#include "host/session/source.h"
#include "host/text/visible_text.h"
#include "ombe_core/component_identifiers.h"
#include "ombe_core/container_interface.h"
#include "ombe_core/media_source.h"
#include "ombe_core/plugin_context.h"
#include "ombe_core/subtitle_control_interface.h"

namespace Ombe {
namespace {

constexpr const char* kIdentifiers[] = {
    kContainerInterfaceId, kComponentInterfaceId,    kInputComponentId,
    kInputInterfaceId,     kSingleOutputComponentId, kMultipleOutputComponentId,
    kOutputComponentId,    kOutputInterfaceId,       kSubtitleControlInterfaceId,
};

struct BlindContext final : PluginContext {
  bool supportsFormat(String /*formatName*/) override { return false; }
};

}  // namespace

PluginDescription describePlugin(const std::string& path, Plugin& plugin) {
  PluginDescription result{path, 0, {}, {}};
  if (const PluginInfo* info = plugin.getPluginInfo(); info != nullptr) {
    result.engineVersion = info->engineVersion;
  }
  for (const char* identifier : kIdentifiers) {
    void* found = nullptr;
    if (plugin.getInterface(identifier, &found) == kSuccess) {
      result.interfaces.emplace_back(identifier);
    }
  }
  ContainerInterface* container = findInterface<ContainerInterface>(plugin, kContainerInterfaceId);
  const std::uint32_t types = container == nullptr ? 0 : container->mediaTypeCount();
  for (std::uint32_t i = 0; i < types; ++i) {
    result.mediaTypes.emplace_back(view(container->mediaTypeAt(i)), container->mediaTypeRankAt(i));
  }
  return result;
}

std::vector<std::string> neededFormats(const PluginLibrary& library, const std::string& file) {
  BlindContext context;
  HostController controller;
  HostContainer host(controller);
  const PluginHandle plugin = library.create(context);
  ContainerInterface* container = findInterface<ContainerInterface>(*plugin, kContainerInterfaceId);
  std::vector<std::string> names;
  if (container == nullptr) return names;
  container->attach(&host, host.newUID());
  FormatRequirementList missing;
  container->probe(MediaSource(toByteString(sourceUri(file))), 0, 0, &missing);
  for (const FormatRequirement& format : missing) {
    names.emplace_back(format.name, ::strnlen(format.name, sizeof format.name));
  }
  return names;
}

void appendRow(std::string& out, const char* name, const std::string& value) {
  out += fmt::format("{:<14}{}\n", fmt::format("{}:", name), visibleLine(value));
}

void appendText(std::string& out, const PluginDescription& plugin) {
  appendRow(out, "plug-in", plugin.path);
  for (const std::string& identifier : plugin.interfaces) appendRow(out, "answers", identifier);
  for (const auto& [name, rank] : plugin.mediaTypes) {
    appendRow(out, "media type", fmt::format("{} (rank {})", name, rank));
  }
}

nlohmann::ordered_json toJson(const PluginDescription& plugin) {
  nlohmann::ordered_json types = nlohmann::ordered_json::array();
  for (const auto& [name, rank] : plugin.mediaTypes) {
    types.push_back({{"name", name}, {"rank", rank}});
  }
  return {{"path", plugin.path},
          {"engineVersion", plugin.engineVersion},
          {"interfaces", plugin.interfaces},
          {"mediaTypes", types}};
}

}  // namespace Ombe
