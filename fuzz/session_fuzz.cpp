// Whole sessions: a file, and a script of the calls that an engine makes on the plug-in through its
// entry point and interfaces. Input: length of the script, script, bytes of the file.
#include "cost.h"
#include "host/session/chunk.h"
#include "host/session/host_container.h"
#include "ombe_core/container_interface.h"
#include "ombe_core/logger.h"
#include "ombe_core/media_source.h"
#include "ombe_core/plugin.h"
#include "ombe_core/subtitle_control_interface.h"
#include "ombe_core/subtitle_settings.h"
#include "support.h"
#include "temporary_file.h"

using namespace Ombe;  // NOLINT(google-build-using-namespace)
using ombe_fuzz::Input;
using ombe_fuzz::require;

extern "C" Status __getPlugin(PluginContext*, Plugin**);  // NOLINT(bugprone-reserved-identifier)

namespace {

class Session {
 public:
  Session() {
    require(__getPlugin(&context_, &plugin_) == kSuccess, "there is a component");
    void* found = nullptr;
    plugin_->getInterface(kContainerInterfaceId, &found);
    container_ = static_cast<ContainerInterface*>(found);
    container_->attach(&host_, 9);
    plugin_->getInterface(kSubtitleControlInterfaceId, &found);
    static_cast<SubtitleControlInterface*>(found)->setSubtitleController(&controller_);
  }
  ~Session() {
    container_->deactivate(false);
    require(host_.streams().empty(), "every stream is withdrawn");
    require(plugin_->release() == 0, "the last release ends the component");
  }

  void step(Input& script, const std::string& path) {
    const unsigned operation = script.number() % 11U;
    if (operation == 0) return open(path);
    if (operation == 1) return open(path.substr(0, path.rfind('.')));
    if (operation == 2) return change(script);
    if (operation == 3) return clock_.set(script.number<std::int32_t>());
    if (operation == 4) return host_.setTimeOffset(script.number<double>());
    if (operation == 5) return static_cast<void>(container_->activateProgram(script.number() % 4U));
    if (operation == 6) return static_cast<void>(container_->deactivate(script.number() % 4 != 0));
    if (host_.streams().empty()) return;
    StreamInterface& stream = *host_.streams().rbegin()->second;
    const std::int32_t number = script.number() - 128;
    if (operation == 7) require(stream.setReadSpeed(number), "every speed is accepted");
    if (operation == 8) require(stream.resetStream() == kSuccess, "a reset succeeds");
    if (operation == 9) seek(stream, static_cast<std::uint32_t>(number * number * number));
    for (int i = 0; operation == 10 && i <= number; ++i) read(stream);
  }

 private:
  void open(const std::string& path) {
    const MediaSource source(toByteString("file://" + path));
    container_->probe(source, 0, 0, nullptr);
    const std::size_t before = host_.streams().size();
    const bool isOpen = container_->open(source) == kSuccess;
    const UIDList programs = container_->getProgramUIDs();
    require(container_->activateProgram(programs.head()->value) == kSuccess, "a program");
    require(host_.streams().size() == before + (isOpen ? 1 : 0), "a stream for an opened file");
    for (const auto& [uid, stream] : host_.streams()) stream->setTimeSource(&clock_);
  }

  void change(Input& script) {
    constexpr const char* kNames[] = {"",         "UTF8", "windows-1250", "UTF16-LE",   "nothing",
                                      "GB-18030", "SCSU", "BOCU-1",       "ISO-2022-JP"};
    const Setting* settings[] = {&frameRateSetting(), &codePageSetting(), &autodetectedSetting()};
    const Setting& setting = *settings[script.number() % std::size(settings)];
    const unsigned kind = script.number() % 4U, number = script.number();
    SettingValue value = SettingValue::boolean(number % 2 == 0);
    if (kind == 1) value = SettingValue::ratio({number, script.number()});
    if (kind == 2) value = SettingValue::ratio({number << 24U, script.number<std::uint32_t>()});
    if (kind == 3) value = SettingValue::string(new String(kNames[number % 9]));
    controller_.setValue(setting, value);
  }

  /// Reads once and tells what came.
  Chunk read(StreamInterface& stream) {
    MediaChunk* raw = nullptr;
    const Status status = stream.readStream(&raw);
    Chunk chunk(raw);
    require(status == kSuccess || (status == kNothingDue && !chunk), "a chunk or nothing due");
    if (!chunk) return chunk;
    const std::int64_t now = clock_.currentTime();
    require(now >= 0 && stream.readSpeed() != 0, "no chunk without a clock or on a pause");
    require(static_cast<std::int32_t>(chunk.timestamp()) <= now + 500, "a chunk is due");
    require(std::string(chunk.text()).size() == raw->bufferSize(), "a chunk is full");
    require(stream.getLastChunkTime() == chunk.timestamp() + chunk.duration(), "its end is known");
    return chunk;
  }

  void seek(StreamInterface& stream, std::uint32_t time) {
    std::uint32_t next = 0, reached = 0;
    const Status status = stream.getNextChunkTime(0, time, &next);
    require(stream.seekStream(time, &reached, false) == status, "both or none");
    clock_.set(PlaybackClock::kEnd);
    host_.setTimeOffset(0);
    const Chunk chunk = read(stream);
    if (!chunk || stream.readSpeed() <= 0) return;
    require(chunk.timestamp() == reached, "a seek goes where it says");
    require(chunk.timestamp() + chunk.duration() >= time, "what a seek finds is not over");
  }

  HostContext context_;
  HostController controller_;
  HostContainer host_{controller_};
  PlaybackClock clock_;
  Plugin* plugin_ = nullptr;
  ContainerInterface* container_ = nullptr;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const ombe_fuzz::TemporaryFile file;
  Logger::instance().setSink([](const LogRecord& record) { require(record.line > 0, "a line"); });
  Input input(data, size);
  Input script(input.take(input.number() % 64U));
  file.write(input.rest);
  Session session;
  while (!script.rest.empty()) {
    const ombe_fuzz::CostLimit limit(input.rest.size(), {0.7, 120, 45});
    session.step(script, file.path);
  }
  return 0;
}
