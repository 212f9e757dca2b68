#include <fmt/core.h>

#include <nlohmann/json.hpp>

#include "host/cli/common_options.h"
#include "host/commands/plugin_description.h"
#include "host/io/input_file.h"
#include "host/io/json_output.h"
#include "host/io/output_file.h"
#include "host/session/host_container.h"
#include "host/session/plugin_library.h"

namespace Ombe {
namespace {

struct InspectOptions {
  SessionOptions session;
  bool json = false;
};

std::string versionText(std::uint32_t number) {
  return fmt::format("{}.{}.{}", number / 10000, number / 100 % 100, number % 100);
}

void write(const PluginDescription& plugin, const std::vector<std::string>& formats) {
  std::string out;
  appendText(out, plugin);
  appendRow(out, "engine", versionText(plugin.engineVersion));
  for (const std::string& format : formats) appendRow(out, "text format", format);
  if (formats.empty()) appendRow(out, "text format", "not told for a MicroDVD file");
  writeOutput("-", std::move(out));
}

ExitCode inspect(const InspectOptions& options) {
  withJson(options.json, [&](Json& document) {
    HostContext context;
    const PluginLibrary library(findPlugin(options.session.plugin, options.session.pluginFolder));
    const PluginDescription plugin = describePlugin(library.path(), *library.create(context));
    // Which text format a plug-in needs it only tells when it recognises a source, so it is shown
    // the shortest MicroDVD file.
    const InputFile sample = InputFile::holding("{1}{2}a\n");
    const std::vector<std::string> formats = neededFormats(library, sample.path());
    document["plugin"] = toJson(plugin);
    document["plugin"]["formats"] = formats;
    if (!options.json) write(plugin, formats);
  });
  return ExitCode::kDone;
}

}  // namespace

Command inspectCommand() {
  const auto options = std::make_shared<InspectOptions>();
  options->session.pluginFolder = pluginsBesideProgram();
  return {.purpose = "Show what a plug-in says of itself",
          .footer = "Example: ombe inspect ./microdvd.so --json",
          .options = {{.names = {"PLUGIN"},
                       .purpose = "Plug-in, or folder that it is in",
                       .takesFile = true,
                       .set = into(options->session.plugin)},
                      jsonOption(options->json)},
          .run = [options] { return inspect(*options); }};
}

}  // namespace Ombe
