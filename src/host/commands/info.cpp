#include <fmt/format.h>

#include <nlohmann/json.hpp>

#include "host/commands/commands.h"
#include "host/file_info.h"
#include "host/number_text.h"
#include "host/options.h"
#include "host/output_file.h"
#include "host/session.h"

namespace Ombe {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kJsonVersion = 1;

template <typename T>
Json orNull(const std::optional<T>& value) {
  return value ? Json(*value) : Json(nullptr);
}

Json toJson(const PluginDescription& plugin) {
  Json types = Json::array();
  for (const auto& [name, rank] : plugin.mediaTypes) {
    types.push_back({{"name", name}, {"rank", rank}});
  }
  return {{"path", plugin.path},
          {"engineVersion", plugin.engineVersion},
          {"interfaces", plugin.interfaces},
          {"mediaTypes", types}};
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

void appendRow(std::string& out, const char* name, const std::string& value) {
  out += fmt::format("{:<14}{}\n", fmt::format("{}:", name), value);
}

std::string orNone(const std::string& text) { return text.empty() ? "none" : text; }

std::string timeText(const std::optional<std::uint32_t>& time) {
  if (!time) return "none";
  std::string text;
  appendTimecode(text, *time, '.');
  return fmt::format("{} ({} ms)", text, *time);
}

void appendText(std::string& out, const PluginDescription& plugin) {
  appendRow(out, "plug-in", plugin.path);
  for (const std::string& identifier : plugin.interfaces) appendRow(out, "answers", identifier);
  for (const auto& [name, rank] : plugin.mediaTypes) {
    appendRow(out, "media type", fmt::format("{} (rank {})", name, rank));
  }
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

void writeJson(OutputFile& output, const Json& document) {
  output.buffer() += document.dump(2, ' ', false, Json::error_handler_t::replace);
  output.buffer() += '\n';
  output.commit();
}

}  // namespace

ExitCode runInfo(const Options& options) {
  const std::string& file = options.files.front();
  Session session(options.session);
  OutputFile output("-");
  Json document = {
      {"version", kJsonVersion}, {"file", file}, {"plugin", toJson(describePlugin(session))}};
  try {
    session.open(file);
  } catch (const Failure& failure) {
    document["error"] = failure.what();
    if (options.json) writeJson(output, document);
    throw;
  }
  const FileInfo info = describeFile(session);
  if (options.json) {
    document.update(toJson(info));
    writeJson(output, document);
  } else {
    appendRow(output.buffer(), "file", file);
    appendText(output.buffer(), info);
    appendText(output.buffer(), describePlugin(session));
    output.commit();
  }
  return ExitCode::kDone;
}

}  // namespace Ombe
