// The engine's objects that a plug-in meets: what it may ask at birth, what containers are attached
// to, and the media time that streams read by.
#pragma once

#include <atomic>
#include <limits>
#include <map>
#include <memory>
#include <string>

#include "host/session/host_controller.h"
#include "ombe_core/container_host.h"
#include "ombe_core/plugin_context.h"
#include "ombe_core/stream_interface.h"
#include "ombe_core/time_source.h"

namespace Ombe {

/// This host shows UTF-8 text and nothing else. Has no state; any thread.
class HostContext final : public PluginContext {
 public:
  bool supportsFormat(String formatName) override { return view(formatName) == "UTF8"; }
};

/// Host of one container: its settings (those of the controller, which must outlive it), UIDs, and
/// the streams that it announced, owned until withdrawn. Belongs to the calling thread; settings,
/// UIDs and the time offset may be used on any.
class HostContainer final : public ContainerHost {
 public:
  using Streams = std::map<UID, std::unique_ptr<StreamInterface>>;

  explicit HostContainer(HostController& controller) : controller_(controller) {}

  void setPreferredLanguage(std::string language) { language_ = std::move(language); }
  void setTimeOffset(double milliseconds) { timeOffset_ = milliseconds; }

  [[nodiscard]] const Streams& streams() const { return streams_; }
  /// The stream that the container selected; null before and after.
  [[nodiscard]] StreamInterface* selectedStream() const;

  bool getValue(const Setting& setting, SettingValue& out) override {
    return controller_.getValue(setting, out);
  }
  /// Consumers are told, as of any other change.
  void setValue(const Setting& setting, const SettingValue& value) override {
    controller_.setValue(setting, value);
  }
  /// Counts up from 1 through the whole process.
  UID newUID() override;
  String preferredLanguage() override { return language_.c_str(); }
  double getTimeOffset() override { return timeOffset_; }
  /// Announcing a stream again changes nothing.
  Status announceStream(StreamInterface* stream) override;
  Status withdrawStream(UID stream) override;
  Status selectStream(UID stream, std::int32_t flag) override;

 private:
  HostController& controller_;
  std::string language_;
  std::atomic<double> timeOffset_{0};
  Streams streams_;
  UID selected_ = kNoUID;
};

/// A clock that stands where it was put; 0 at first. Any thread.
class PlaybackClock final : public TimeSource {
 public:
  /// Streams hand out what starts up to half a second ahead of the clock. From here that reaches
  /// exactly the last signed 32-bit millisecond, so every entry is due. A later clock is of no
  /// use, and wraps in a plug-in that adds in 32 bits.
  static constexpr std::int32_t kEnd = std::numeric_limits<std::int32_t>::max() - 500;

  void set(std::int32_t milliseconds) { time_.store(milliseconds, std::memory_order_relaxed); }
  std::int32_t currentTime() override { return time_.load(std::memory_order_relaxed); }

 private:
  std::atomic<std::int32_t> time_{0};
};

}  // namespace Ombe
