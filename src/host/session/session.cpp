#include "host/session/session.h"

#include <exception>

#include "host/io/descriptor_io.h"
#include "host/io/failure.h"
#include "host/io/log_records.h"
#include "host/session/source.h"
#include "host/text/code_page.h"
#include "ombe_core/media_source.h"
#include "ombe_core/subtitle_control_interface.h"

namespace Ombe {
Session::Session(const SessionOptions& options)
    : options_(options),
      library_(findPlugin(options.plugin, options.pluginFolder)),
      host_(controller_),
      plugin_(library_.create(context_)) {
  container_ = findInterface<ContainerInterface>(*plugin_, kContainerInterfaceId);
  if (container_ == nullptr) {
    throw Failure(Step::kLoad, library_.path() + ": the plug-in offers no container");
  }
  host_.setPreferredLanguage(options_.language);
  host_.setTimeOffset(options_.offsetMs);
  if (options_.frameRate) controller_.setFrameRate(*options_.frameRate);
  if (options_.codePage && !choosesCodePage()) controller_.setCodePage(*options_.codePage);
  container_->attach(&host_, host_.newUID());
  auto* control = findInterface<SubtitleControlInterface>(*plugin_, kSubtitleControlInterfaceId);
  if (control != nullptr) control->setSubtitleController(&controller_);
}

Session::~Session() {
  if (!opened_) return;
  try {
    container_->deactivate(false);
  } catch (const std::exception&) {
    // Out of memory while letting go: the component takes what is left with it.
  }
}

bool Session::probe(const std::string& file) {
  requireReadable(file);
  if (options_.codePage && !choosesCodePage() && !isKnownCodePage(*options_.codePage)) {
    throw Failure(file, Step::kConvert, "unknown code page '" + *options_.codePage + "'");
  }
  const bool isRecognised = ask(
      file, [&](const MediaSource& source) { return container_->probe(source, 0, 0, nullptr); });
  if (choosesCodePage() && !choice_) choose(file);
  return isRecognised;
}

void Session::open(const std::string& file) {
  if (!probe(file)) {
    throw Failure(file, Step::kProbe, "not recognised");
  }
  if (!ask(file, [&](const MediaSource& source) { return container_->open(source) == kSuccess; })) {
    throw Failure(file, Step::kOpen, "could not be opened");
  }
  opened_ = true;
  file_ = file;
  activate();
}

/// Whether the plug-in says yes. A no is asked for again: its log tells what it could not read from
/// what it read and refuses, and only the log does, but it costs time to write.
template <typename Question>
bool Session::ask(const std::string& file, const Question& question) {
  const MediaSource source(toByteString(sourceUri(file)));
  if (question(source)) return true;
  const FailedReads failed;
  if (question(source)) return true;  // it could not be read a moment ago
  if (failed.last().empty()) return false;
  const std::string reason = reasonOfFailedRead(file, failed.last());
  if (reason.empty()) return false;
  throw Failure(file, Step::kRead, "cannot be read: " + reason);
}

void Session::activate() {
  const UIDList programs = container_->getProgramUIDs();
  if (programs.head() == nullptr ||
      container_->activateProgram(programs.head()->value) != kSuccess) {
    throw Failure(file_, Step::kActivate, "its program could not be activated");
  }
  stream_ = host_.selectedStream();
  if (stream_ == nullptr)
    throw Failure(file_, Step::kActivate, "the plug-in selected no stream of it");
  if (stream_->setTimeSource(&clock_) != kSuccess) {
    throw Failure(file_, Step::kActivate, "its stream takes no clock");
  }
}

Status Session::read(Chunk& out) {
  MediaChunk* chunk = nullptr;
  const Status status = stream_->readStream(&chunk);
  out = Chunk(chunk);
  return status;
}

void Session::readToEnd(const std::function<void(const Chunk&)>& take) {
  clock_.set(PlaybackClock::kEnd);
  for (;;) {
    Chunk chunk;
    // The clock stands still: what is not due now never will be, so asking again is no use.
    if (read(chunk) != kSuccess)
      throw Failure(file_, Step::kDeliver, "reading stopped before the end");
    if (!chunk) return;
    take(chunk);
  }
}

std::string Session::signedCodePage() {
  return controller_.isAutodetected() ? controller_.codePage() : std::string();
}

/// After the plug-in has looked for a signature.
void Session::choose(const std::string& file) {
  const std::string stated = signedCodePage();
  choice_ = stated.empty() ? chooseCodePage(readFile(file, kLargestFile))
                           : CodePageChoice{CodePageChoice::Ground::kSignature, stated};
  if (choice_->isGuess()) controller_.setCodePage(choice_->codePage);
}

}  // namespace Ombe
