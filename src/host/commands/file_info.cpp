#include "host/commands/file_info.h"

#include <cstring>

#include "host/session/session.h"
#include "host/session/settings.h"
#include "host/session/subtitle.h"

namespace Ombe {
namespace {

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

}  // namespace

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

}  // namespace Ombe
