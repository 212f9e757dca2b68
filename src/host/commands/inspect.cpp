#include <fmt/format.h>

#include <nlohmann/json.hpp>

#include "host/cli/common_options.h"
#include "host/commands/plugin_description.h"
#include "host/io/input_file.h"
#include "host/io/json_output.h"
#include "host/io/output_file.h"
#include "host/session/host_context.h"
#include "host/session/plugin_library.h"

namespace Ombe {
namespace {

struct InspectOptions {
  SessionOptions session;
  bool json = false;
};

struct Inspection {
  PluginDescription plugin;
  std::vector<std::string> formats;
};

/// Which text format a plug-in needs it only tells when it recognises a source, so it is shown the
/// shortest MicroDVD file.
Inspection inspected(const SessionOptions& options) {
  HostContext context;
  const PluginLibrary library(findPlugin(options.plugin, options.pluginFolder));
  const PluginHandle plugin = library.create(context);
  const InputFile sample = InputFile::holding("{1}{2}a\n");
  return {describePlugin(library.path(), *plugin), neededFormats(library, sample.path())};
}

std::string versionText(std::uint32_t number) {
  return fmt::format("{}.{}.{}", number / 10000, number / 100 % 100, number % 100);
}

void write(const Inspection& inspection) {
  OutputFile output("-");
  std::string& out = output.buffer();
  appendText(out, inspection.plugin);
  appendRow(out, "engine", versionText(inspection.plugin.engineVersion));
  for (const std::string& format : inspection.formats) appendRow(out, "text format", format);
  if (inspection.formats.empty()) appendRow(out, "text format", "not told for a MicroDVD file");
  output.commit();
}

ExitCode inspect(const InspectOptions& options) {
  withJson(options.json, [&](Json& document) {
    const Inspection inspection = inspected(options.session);
    document["plugin"] = toJson(inspection.plugin);
    document["plugin"]["formats"] = inspection.formats;
    if (!options.json) write(inspection);
  });
  return ExitCode::kDone;
}

}  // namespace

Command inspectCommand() {
  const auto options = std::make_shared<InspectOptions>();
  options->session.pluginFolder = pluginsBesideProgram();
  return {.name = "inspect",
          .purpose = "Show what a plug-in says of itself",
          .footer = "Example: ombe inspect ./microdvd.so --json",
          .options = {{.names = {"PLUGIN"},
                       .purpose = "Plug-in, or folder that it is in",
                       .takesFile = true,
                       .set = into(options->session.plugin)},
                      jsonOption(options->json)},
          .run = [options] { return inspect(*options); }};
}

}  // namespace Ombe
