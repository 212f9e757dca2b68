// An engine around a plug-in under test.
#pragma once

#include <string>
#include <vector>

#include "host/session/host_container.h"
#include "host/session/plugin_library.h"
#include "host/validate/contract_check.h"
#include "host/validate/watched_objects.h"
#include "ombe_core/container_interface.h"
#include "ombe_core/media_source.h"
#include "ombe_core/subtitle_control_interface.h"

namespace Ombe {

/// Everything together. Ends the process by `report` when there is no component.
class WatchedEngine {
 public:
  enum class Attach { kNow, kLater };

  /// Settings are those of `shared`, if there is one.
  explicit WatchedEngine(const Subject& subject, Attach when = Attach::kNow,
                         WatchedController* shared = nullptr);
  WatchedEngine(const WatchedEngine&) = delete;
  WatchedEngine& operator=(const WatchedEngine&) = delete;
  ~WatchedEngine();

  static constexpr UID kContainerUID = UID{1} << 40 | 77;

  /// Reports that there is none, where it is not offered.
  [[nodiscard]] ContainerInterface& container() const;
  [[nodiscard]] SubtitleControlInterface& control() const;

  /// To the host and to the controller.
  void attach();
  bool probe(const std::string& uri, FormatRequirementList* missing = nullptr);
  Status open(const std::string& uri);
  /// Activates the first program.
  Status activate();
  /// Opens, activates, gives the selected stream the clock, which stands at its end.
  StreamInterface& play(const std::string& sample);

  CallRecord record;
  WatchedController ownController{record};
  WatchedController& controller;  ///< its own, or the shared one
  PluginLibrary library;
  WatchedContext context{record};
  WatchedClock clock{record};
  WatchedHost host;
  PluginHandle plugin;
  bool isLetGo = false;  ///< the check has deactivated, or never wants to

 private:
  ContainerInterface* container_ = nullptr;
  SubtitleControlInterface* control_ = nullptr;
};

/// A component that plays a sample.
struct Playing : WatchedEngine {
  /// A sample that does not open is reported as missing: that it opens is asked elsewhere.
  Playing(const Subject& subject, const std::string& file);

  const std::string& sample;
  StreamInterface& stream;
};

/// Reports that there is no sample, that the first does not open, or nothing to play one with.
void requireSamples(const Subject& subject, std::string_view advice = {});

/// Asks as the check wants to be asked; reports when there is no sample where one is needed.
void askOf(const Subject& subject, const ContractCheck& check);

/// One read: "start+duration text", "end", "wait", or the status. The chunk is given back.
std::string readOne(StreamInterface& stream);
/// All that is left in the stream's direction.
std::vector<std::string> readAll(StreamInterface& stream);
/// The same from the beginning.
std::vector<std::string> readAnew(StreamInterface& stream);

}  // namespace Ombe
