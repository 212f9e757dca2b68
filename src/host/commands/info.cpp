#include <fmt/format.h>

#include <nlohmann/json.hpp>

#include "host/cli/options.h"
#include "host/commands/commands.h"
#include "host/commands/file_info.h"
#include "host/io/input_file.h"
#include "host/io/json_output.h"
#include "host/io/output_file.h"
#include "host/session/plugin_description.h"
#include "host/session/session.h"
#include "host/text/number_text.h"

namespace Ombe {
namespace {

template <typename T>
Json orNull(const std::optional<T>& value) {
  return value ? Json(*value) : Json(nullptr);
}

Json toJson(const FileInfo& info) {
  Json streams = Json::array();
  for (const StreamDescription& stream : info.streams) {
    streams.push_back({{"uid", stream.uid},
                       {"name", stream.name},
                       {"language", stream.language},
                       {"region", stream.region},
                       {"format", stream.format},
                       {"selected", stream.selected}});
  }
  Json rate(nullptr);
  if (info.frameRate) {
    rate = {{"numerator", info.frameRate->numerator}, {"denominator", info.frameRate->denominator}};
  }
  return {{"size", orNull(info.size)},
          {"program", {{"uid", info.program}, {"name", info.programName}}},
          {"streams", streams},
          {"settings",
           {{"frameRate", rate},
            {"codePage", orNull(info.codePage)},
            {"autodetected", orNull(info.autodetected)}}},
          {"subtitles",
           {{"count", info.subtitles},
            {"first", orNull(info.firstTime)},
            {"last", orNull(info.lastTime)}}}};
}

std::string orNone(const std::string& text) { return text.empty() ? "none" : text; }

std::string timeText(const std::optional<std::uint32_t>& time) {
  if (!time) return "none";
  std::string text;
  appendTimecode(text, *time, '.');
  return fmt::format("{} ({} ms)", text, *time);
}

void appendText(std::string& out, const FileInfo& info) {
  appendRow(out, "size", info.size ? fmt::format("{} bytes", *info.size) : "unknown");
  appendRow(out, "program", fmt::format("{} (name: {})", info.program, orNone(info.programName)));
  for (const StreamDescription& stream : info.streams) {
    const std::string language =
        stream.region.empty() ? stream.language : stream.language + "-" + stream.region;
    appendRow(out, "stream",
              fmt::format("{} (name: {}, language: {}, format: {}{})", stream.uid, stream.name,
                          orNone(language), stream.format, stream.selected ? ", selected" : ""));
  }
  const auto& rate = info.frameRate;
  appendRow(out, "frame rate",
            rate ? fmt::format("{}/{}", rate->numerator, rate->denominator) : "not set");
  appendRow(out, "code page", info.codePage.value_or("not set"));
  appendRow(out, "autodetected",
            info.autodetected ? (*info.autodetected ? "yes" : "no") : "not set");
  appendRow(out, "subtitles", fmt::format("{}", info.subtitles));
  appendRow(out, "first time", timeText(info.firstTime));
  appendRow(out, "last time", timeText(info.lastTime));
}

void writeText(const std::string& file, const FileInfo& info, const PluginDescription& plugin) {
  OutputFile output("-");
  appendRow(output.buffer(), "file", file);
  appendText(output.buffer(), info);
  appendText(output.buffer(), plugin);
  output.commit();
}

}  // namespace

ExitCode runInfo(const Options& options) {
  withJson(options.json, [&](Json& document) {
    const InputFile input(options.files.front());
    document["file"] = input.name();
    Session session(options.session);
    const PluginDescription plugin = describePlugin(session.library().path(), session.plugin());
    document["plugin"] = toJson(plugin);
    const FileInfo info = asNamed(input, [&] {
      session.open(input.path());
      return describeFile(session);
    });
    document.update(toJson(info));
    if (!options.json) writeText(input.name(), info, plugin);
  });
  return ExitCode::kDone;
}

}  // namespace Ombe
