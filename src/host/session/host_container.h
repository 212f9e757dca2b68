// What plug-ins may ask the host at birth, and the engine object that containers are attached to.
#pragma once

#include <atomic>
#include <map>
#include <memory>
#include <string>

#include "host/session/host_controller.h"
#include "ombe_core/container_host.h"
#include "ombe_core/plugin_context.h"
#include "ombe_core/stream_interface.h"

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

  bool getValue(const Setting& setting, SettingValue& out) override;
  /// Consumers are told, as of any other change.
  void setValue(const Setting& setting, const SettingValue& value) override;
  /// Counts up from 1 through the whole process.
  UID newUID() override;
  String preferredLanguage() override;
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

}  // namespace Ombe
