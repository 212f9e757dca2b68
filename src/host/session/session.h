// One source from loading the plug-in to letting go of it.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "host/session/chunk.h"
#include "host/session/code_page_choice.h"
#include "host/session/host_container.h"
#include "host/session/plugin_library.h"
#include "ombe_core/container_interface.h"

namespace Ombe {

class MediaSource;

/// What a person may say about every source.
struct SessionOptions {
  std::optional<Ratio> frameRate = std::nullopt;       ///< zero parts are the plug-in's to judge
  std::optional<std::string> codePage = std::nullopt;  ///< or kAutoCodePage
  std::string language = {};                           ///< preferred; "en", "en-US" or empty
  std::int32_t offsetMs = 0;                           ///< added to every time
  std::string plugin = {};                             ///< path; empty to search for it
  std::string pluginFolder = {};                       ///< where the search ends; may be empty
};

/// Drives one component through its slots, as an engine would: load, attach and controller at
/// construction, then probe, open and reading; the destructor undoes what was done, in reverse.
/// Chunks must be gone before the session. One thread at a time, except for the clock and the
/// controller. Sessions on different threads share nothing.
class Session {
 public:
  /// Throws Failure (kFind, kLoad).
  explicit Session(const SessionOptions& options);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session();

  /// Whether the plug-in recognises the file. Throws Failure when there is nothing to ask it: the
  /// file cannot be read, also by the plug-in as its log has it, its path cannot be written as a
  /// URI, the code page is unknown.
  bool probe(const std::string& file);

  /// The code page that a signature in the file states; empty for none. From `probe` on.
  [[nodiscard]] std::string signedCodePage();
  /// How the code page of the file was chosen; nothing unless that was asked for. From `probe` on.
  [[nodiscard]] const std::optional<CodePageChoice>& codePageChoice() const { return choice_; }

  /// Probes, opens and activates, and gives the selected stream the clock. At most once. Throws
  /// Failure naming the file and the step.
  void open(const std::string& file);

  /// The selected stream; valid from `open` on.
  [[nodiscard]] StreamInterface& stream() const { return *stream_; }
  /// A status as StreamInterface::readStream gives it, and its chunk or none.
  Status read(Chunk& out);
  /// Puts the clock to its end and hands every entry that is left to `take`, in the order of
  /// delivery. Throws Failure, and what `take` throws.
  void readToEnd(const std::function<void(const Chunk&)>& take);

  [[nodiscard]] PlaybackClock& clock() { return clock_; }
  [[nodiscard]] HostController& controller() { return controller_; }
  [[nodiscard]] HostContainer& host() { return host_; }
  [[nodiscard]] Plugin& plugin() { return *plugin_; }
  [[nodiscard]] ContainerInterface& container() { return *container_; }
  [[nodiscard]] const PluginLibrary& library() const { return library_; }

 private:
  [[nodiscard]] bool choosesCodePage() const { return options_.codePage == kAutoCodePage; }
  template <typename Question>
  bool ask(const std::string& file, const Question& question);
  void activate();
  void choose(const std::string& file);

  SessionOptions options_;
  // Streams hold code of the library, the component knows all the others.
  HostContext context_;
  PluginLibrary library_;
  HostController controller_;
  HostContainer host_;
  PlaybackClock clock_;
  PluginHandle plugin_;
  ContainerInterface* container_ = nullptr;  // the component's
  StreamInterface* stream_ = nullptr;        // the host's
  std::string file_;
  std::optional<CodePageChoice> choice_;
  bool opened_ = false;
};

}  // namespace Ombe
