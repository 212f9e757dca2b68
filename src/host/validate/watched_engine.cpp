#include "host/validate/watched_engine.h"

#include <filesystem>
#include <utility>

#include "host/session/chunk.h"
#include "host/session/source.h"
#include "host/validate/verdict.h"

namespace Ombe {

WatchedEngine::WatchedEngine(const Subject& subject, Attach when, WatchedController* shared)
    : controller(shared == nullptr ? ownController : *shared),
      library(subject.plugin),
      host(record, controller),
      plugin(library.create(context)) {
  container_ = findInterface<ContainerInterface>(*plugin, kContainerInterfaceId);
  control_ = findInterface<SubtitleControlInterface>(*plugin, kSubtitleControlInterfaceId);
  if (when == Attach::kNow) attach();
}

WatchedEngine::~WatchedEngine() {
  if (!isLetGo && container_ != nullptr) container_->deactivate(false);
}

ContainerInterface& WatchedEngine::container() const {
  if (container_ == nullptr) report(Outcome::kNotOffered, "it has no container");
  return *container_;
}

SubtitleControlInterface& WatchedEngine::control() const {
  if (control_ == nullptr) report(Outcome::kNotOffered, "it takes no subtitle controller");
  return *control_;
}

void WatchedEngine::attach() {
  container().attach(&host, kContainerUID);
  if (control_ != nullptr) control_->setSubtitleController(&controller);
}

bool WatchedEngine::probe(const std::string& uri, FormatRequirementList* missing) {
  return container().probe(MediaSource(toByteString(uri)), 1, 2, missing);
}

Status WatchedEngine::open(const std::string& uri) {
  return container().open(MediaSource(toByteString(uri)));
}

Status WatchedEngine::activate() {
  const UIDList programs = container().getProgramUIDs();
  return programs.head() == nullptr ? kGeneralFailure
                                    : container().activateProgram(programs.head()->value);
}

StreamInterface& WatchedEngine::play(const std::string& sample) {
  const std::string uri = sourceUri(sample);
  expectSame("probe", true, probe(uri));
  expectSame("open", kSuccess, open(uri));
  expectSame("activateProgram", kSuccess, activate());
  const auto selected = host.streams.find(host.selected);
  expect(selected != host.streams.end(), "activateProgram selected no stream that is announced");
  clock.set(PlaybackClock::kEnd);
  expectSame("setTimeSource", kSuccess, selected->second->setTimeSource(&clock));
  return *selected->second;
}

namespace {

StreamInterface& playFirst(WatchedEngine& engine, const std::string& sample) {
  setFailure(Outcome::kNeedsSample);
  StreamInterface& stream = engine.play(sample);
  setFailure(Outcome::kFailed);
  return stream;
}

void askOf(const Subject& subject, void (*ask)(const Subject&)) { ask(subject); }

void askOf(const Subject& subject, void (*ask)(Plugin&)) {
  ask(*WatchedEngine(subject, WatchedEngine::Attach::kLater).plugin);
}

void askOf(const Subject& subject, void (*ask)(WatchedEngine&)) {
  WatchedEngine engine(subject);
  ask(engine);
}

void askOf(const Subject& subject, void (*ask)(Playing&)) {
  if (subject.samples.empty()) requireSamples(subject, "name a file of its format with --sample");
  for (const std::string& sample : subject.samples) {
    setPlace(std::filesystem::path(sample).filename().string() + ": ");
    Playing playing(subject, sample);
    ask(playing);
  }
}

}  // namespace

Playing::Playing(const Subject& subject, const std::string& file)
    : WatchedEngine(subject), sample(file), stream(playFirst(*this, file)) {}

void requireSamples(const Subject& subject, std::string_view advice) {
  if (!subject.samples.empty()) {
    const Playing opened(subject, subject.samples.front());
  } else {
    static_cast<void>(WatchedEngine(subject).container());
    report(Outcome::kNeedsSample, advice);
  }
}

void askOf(const Subject& subject, const ContractCheck& check) {
  std::visit([&](const auto ask) { askOf(subject, ask); }, check.ask);
}

std::string readOne(StreamInterface& stream) {
  static char stale = 0;
  auto* delivered = reinterpret_cast<MediaChunk*>(&stale);  // every answer overwrites it
  const Status status = stream.readStream(&delivered);
  expect(static_cast<void*>(delivered) != &stale, "readStream left its output as it was");
  if (delivered == nullptr) {
    return status == kSuccess ? "end" : status == kNothingDue ? "wait" : valueText(status);
  }
  const Chunk chunk(delivered);
  expectSame("readStream with a chunk", kSuccess, status);
  return std::to_string(chunk.timestamp()) + "+" + std::to_string(chunk.duration()) + " " +
         std::string(chunk.text());
}

std::vector<std::string> readAll(StreamInterface& stream) {
  std::vector<std::string> all;
  for (std::string one = readOne(stream); one != "end"; one = readOne(stream)) {
    expect(one.find(' ') != std::string::npos, "a read with the clock at its end gave " + one);
    all.push_back(std::move(one));
  }
  return all;
}

std::vector<std::string> readAnew(StreamInterface& stream) {
  stream.resetStream();
  return readAll(stream);
}

}  // namespace Ombe
