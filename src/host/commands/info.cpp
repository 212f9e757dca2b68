#include <fmt/core.h>

#include <cstring>
#include <nlohmann/json.hpp>

#include "host/check/check.h"
#include "host/check/fitted_times.h"
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

template <typename T>
std::string text(const kelm_string<T>& string) {
  return std::string(view(string));
}

Json describeStream(StreamInterface& stream, bool isSelected) {
  ByteString name;
  String language;
  String region;
  stream.getStreamInfo(&name, &language, &region);
  const FormatRequirement* format = stream.getFormat();
  const std::size_t length = format == nullptr ? 0 : ::strnlen(format->name, sizeof format->name);
  return {{"uid", stream.streamUID()},
          {"name", text(name)},
          {"language", text(language)},
          {"region", text(region)},
          {"format", length == 0 ? std::string() : std::string(format->name, length)},
          {"selected", isSelected}};
}

/// As they stand after opening; null for one that is not set.
Json describeSettings(HostController& settings) {
  Json rate, codePage, autodetected;
  SettingValue value;
  if (settings.getValue(frameRateSetting(), value)) {
    if (const auto set = value.asRatio())
      rate = {{"numerator", set->numerator}, {"denominator", set->denominator}};
  }
  if (settings.getValue(codePageSetting(), value) && value.asString() != nullptr) {
    codePage = text(*value.asString());
  }
  if (settings.getValue(autodetectedSetting(), value)) {
    if (const auto set = value.asBoolean()) autodetected = *set;
  }
  return {{"frameRate", rate}, {"codePage", codePage}, {"autodetected", autodetected}};
}

/// Reads to the end. Start of the first delivered and end of the last, milliseconds.
Json describeSubtitles(Session& session) {
  const auto offset = static_cast<std::int32_t>(session.host().getTimeOffset());
  std::uint64_t count = 0;
  Json first, last;
  session.readToEnd([&](const Chunk& chunk) {
    const auto subtitle = timedSubtitle(chunk, offset);
    if (!subtitle) return;
    if (count++ == 0) first = subtitle->timestamp;
    last = subtitle->end();
  });
  return {{"count", count}, {"first", first}, {"last", last}};
}

/// The open source of the session, which it reads to its end.
Json describeFile(Session& session) {
  ContainerInterface& container = session.container();
  const UID program = container.getProgramUIDs().head()->value;
  Json streams = Json::array();
  for (const auto& [uid, stream] : session.host().streams()) {
    streams.push_back(describeStream(*stream, stream.get() == &session.stream()));
  }
  std::uint64_t size = 0;
  const bool hasSize = container.getFileSize(&size) == kSuccess;
  return {{"size", hasSize ? Json(size) : Json(nullptr)},
          {"program", {{"uid", program}, {"name", text(container.getProgramName(program))}}},
          {"streams", std::move(streams)},
          {"settings", describeSettings(session.controller())},
          {"subtitles", describeSubtitles(session)}};
}

std::string orNone(const std::string& text) { return text.empty() ? "none" : text; }

std::string timeText(const Json& time) {
  if (time.is_null()) return "none";
  std::string text;
  appendTimecode(text, time.get<std::uint32_t>(), '.');
  return fmt::format("{} ({} ms)", text, time.dump());
}

/// The frame rate of the file itself is what holds where none is set; empty where it is not known.
void appendText(std::string& out, const Json& info, const std::string& fileRate) {
  const Json &size = info["size"], &program = info["program"], &settings = info["settings"];
  appendRow(out, "size", size.is_null() ? "unknown" : size.dump() + " bytes");
  appendRow(out, "program",
            fmt::format("{} (name: {})", program["uid"].dump(), orNone(program["name"])));
  for (const Json& stream : info["streams"]) {
    std::string language = stream["language"];
    if (const std::string region = stream["region"]; !region.empty()) language += "-" + region;
    appendRow(out, "stream",
              fmt::format("{} (name: {}, language: {}, format: {}{})", stream["uid"].dump(),
                          stream["name"].get<std::string>(), orNone(language),
                          stream["format"].get<std::string>(),
                          stream["selected"].get<bool>() ? ", selected" : ""));
  }
  const Json &rate = settings["frameRate"], &codePage = settings["codePage"];
  const Json& autodetected = settings["autodetected"];
  appendRow(out, "frame rate",
            rate.is_null() ? "not set" + (fileRate.empty() ? "" : "; " + fileRate)
                           : rate["numerator"].dump() + "/" + rate["denominator"].dump());
  appendRow(out, "code page", codePage.is_null() ? "not set" : codePage.get<std::string>());
  appendRow(out, "autodetected",
            autodetected.is_null() ? "not set" : (autodetected.get<bool>() ? "yes" : "no"));
  appendRow(out, "subtitles", info["subtitles"]["count"].dump());
  appendRow(out, "first time", timeText(info["subtitles"]["first"]));
  appendRow(out, "last time", timeText(info["subtitles"]["last"]));
}

void writeText(const Json& info, const std::string& fileRate, const PluginDescription& plugin) {
  std::string out;
  appendRow(out, "file", info["file"]);
  appendText(out, info, fileRate);
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
    std::string ownRate;
    document.update(asNamed(input, [&] {
      openExplained(session, input, options.session);
      Json found = describeFile(session);
      if (const auto rate = fileRate(session, input.path())) ownRate = rateText(*rate);
      return found;
    }));
    if (!options.json) writeText(document, ownRate, plugin);
  });
  return ExitCode::kDone;
}

}  // namespace

Command infoCommand() {
  const auto options = std::make_shared<InfoOptions>();
  return {.purpose = "Show what the plug-in says of itself and of a file",
          .footer = "Example: ombe info movie.sub --json",
          .options = withSourceOptions({fileOption(options->files), jsonOption(options->json)},
                                       options->session),
          .run = [options] { return info(*options); }};
}

}  // namespace Ombe
