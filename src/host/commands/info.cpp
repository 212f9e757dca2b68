#include <fmt/format.h>

#include <cstring>
#include <nlohmann/json.hpp>

#include "host/check/check.h"
#include "host/check/stated_rate.h"
#include "host/cli/common_options.h"
#include "host/commands/plugin_description.h"
#include "host/io/input_file.h"
#include "host/io/json_output.h"
#include "host/io/output_file.h"
#include "host/session/session.h"
#include "host/session/subtitle.h"
#include "host/text/number_text.h"
#include "ombe_core/subtitle_settings.h"

namespace Ombe {
namespace {

struct InfoOptions {
  std::vector<std::string> files;
  bool json = false;
  SessionOptions session;
};

struct StreamDescription {
  UID uid;
  std::string name;
  std::string language;
  std::string region;
  std::string format;
  bool selected;
};

struct FileInfo {
  UID program;
  std::string programName;
  std::vector<StreamDescription> streams;
  std::optional<std::uint64_t> size;  ///< bytes
  std::optional<Ratio> frameRate;     ///< settings, as they stand after opening
  std::string fileRate;               ///< what holds where none is set, if it is known
  std::optional<std::string> codePage;
  std::optional<bool> autodetected;
  std::uint64_t subtitles = 0;
  std::optional<std::uint32_t> firstTime;  ///< start of the first delivered, milliseconds
  std::optional<std::uint32_t> lastTime;   ///< end of the last delivered, milliseconds
};

template <typename T>
std::string text(const kelm_string<T>& string) {
  return std::string(view(string));
}

StreamDescription describeStream(StreamInterface& stream) {
  ByteString name;
  String language;
  String region;
  stream.getStreamInfo(&name, &language, &region);
  StreamDescription result{stream.streamUID(), text(name), text(language), text(region), {}, false};
  if (const FormatRequirement* format = stream.getFormat(); format != nullptr) {
    result.format.assign(format->name, ::strnlen(format->name, sizeof format->name));
  }
  return result;
}

void describeSettings(HostController& settings, FileInfo& info) {
  SettingValue value;
  if (settings.getValue(frameRateSetting(), value)) info.frameRate = value.asRatio();
  if (settings.getValue(codePageSetting(), value) && value.asString() != nullptr) {
    info.codePage = text(*value.asString());
  }
  if (settings.getValue(autodetectedSetting(), value)) info.autodetected = value.asBoolean();
}

/// Reads the open source of the session to its end.
FileInfo describeFile(Session& session) {
  FileInfo info{};
  ContainerInterface& container = session.container();
  const UIDList programs = container.getProgramUIDs();
  info.program = programs.head()->value;
  info.programName = text(container.getProgramName(info.program));
  for (const auto& [uid, stream] : session.host().streams()) {
    info.streams.push_back(describeStream(*stream));
    info.streams.back().selected = stream.get() == &session.stream();
  }
  std::uint64_t size = 0;
  if (container.getFileSize(&size) == kSuccess) info.size = size;
  describeSettings(session.controller(), info);
  const auto offset = static_cast<std::int32_t>(session.host().getTimeOffset());
  session.readToEnd([&info, offset](const Chunk& chunk) {
    const auto subtitle = timedSubtitle(chunk, offset);
    if (!subtitle) return;
    ++info.subtitles;
    if (!info.firstTime) info.firstTime = subtitle->timestamp;
    info.lastTime = subtitle->end();
  });
  return info;
}

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
            rate ? fmt::format("{}/{}", rate->numerator, rate->denominator)
                 : "not set" + (info.fileRate.empty() ? "" : "; " + info.fileRate));
  appendRow(out, "code page", info.codePage.value_or("not set"));
  appendRow(out, "autodetected",
            info.autodetected ? (*info.autodetected ? "yes" : "no") : "not set");
  appendRow(out, "subtitles", fmt::format("{}", info.subtitles));
  appendRow(out, "first time", timeText(info.firstTime));
  appendRow(out, "last time", timeText(info.lastTime));
}

void writeText(const std::string& file, const FileInfo& info, const PluginDescription& plugin) {
  std::string out;
  appendRow(out, "file", file);
  appendText(out, info);
  appendText(out, plugin);
  writeOutput("-", std::move(out));
}

ExitCode info(const InfoOptions& options) {
  withJson(options.json, [&](Json& document) {
    const InputFile input(options.files.front());
    document["file"] = input.name();
    Session session(options.session);
    const PluginDescription plugin = describePlugin(session.library().path(), session.plugin());
    document["plugin"] = toJson(plugin);
    const FileInfo info = asNamed(input, [&] {
      openExplained(session, input, options.session);
      FileInfo found = describeFile(session);
      if (const auto rate = fileRate(session, input.path())) found.fileRate = rateText(*rate);
      return found;
    });
    document.update(toJson(info));
    if (!options.json) writeText(input.name(), info, plugin);
  });
  return ExitCode::kDone;
}

}  // namespace

Command infoCommand() {
  const auto options = std::make_shared<InfoOptions>();
  return {.name = "info",
          .purpose = "Show what the plug-in says of itself and of a file",
          .footer = "Example: ombe info movie.sub --json",
          .options = withSourceOptions({fileOption(options->files), jsonOption(options->json)},
                                       options->session),
          .run = [options] { return info(*options); }};
}

}  // namespace Ombe
