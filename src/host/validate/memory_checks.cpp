// What operations leave behind, and whether they write where they may.
#include <malloc.h>

#include <memory>

#include "host/session/source.h"
#include "host/validate/verdict.h"
#include "host/validate/watched_engine.h"
#include "ombe_core/setting_consumer.h"
#include "ombe_core/subtitle_settings.h"

// The sanitizers have it, with heaps of their own.
extern "C" __attribute__((weak)) std::size_t __sanitizer_get_current_allocated_bytes();  // NOLINT

namespace Ombe {
namespace {

std::size_t bytesInUse() {
  if (&__sanitizer_get_current_allocated_bytes != nullptr) {
    return __sanitizer_get_current_allocated_bytes();
  }
  const struct mallinfo2 heap = ::mallinfo2();
  return heap.uordblks + heap.hblkhd;
}

bool canMeasure() {
  const std::size_t before = bytesInUse();
  const auto block = std::make_unique<char[]>(1U << 20U);
  return block != nullptr && bytesInUse() > before;
}

/// Does `work` until what is made once has been made, and then some more.
template <typename Work>
void expectNoGrowth(const char* what, const Work& work) {
  constexpr std::size_t kRounds = 16, kLeastBlock = 16;
  if (!canMeasure()) report(Outcome::kNotOffered, "this process cannot measure its heap");
  for (std::size_t round = 0; round < kRounds; ++round) work();
  const std::size_t before = bytesInUse();
  for (std::size_t round = 0; round < kRounds; ++round) work();
  const std::size_t after = bytesInUse();
  const std::size_t growth = after > before ? after - before : 0;
  expect(growth < kRounds * kLeastBlock,
         std::string(what) + " leaves " + std::to_string(growth / kRounds) + " bytes each time");
}

void makesAndReleases(const Subject& subject) {
  CallRecord record;
  WatchedContext context(record);
  const PluginLibrary library(subject.plugin);
  expectNoGrowth("making and releasing a component", [&] { library.create(context).reset(); });
}

void looksUp(Plugin& plugin) {
  expectNoGrowth("looking up interfaces", [&] {
    void* found = nullptr;
    plugin.getInterface(kContainerInterfaceId, &found);
    plugin.getInterface("none", &found);
  });
}

void answers(WatchedEngine& engine) {
  ContainerInterface& container = engine.container();
  expectNoGrowth("asking the container", [&] {
    container.getSourcePath();
    container.getProgramUIDs();
    container.getProgramName(1);
    for (std::uint32_t i = 0; i <= container.mediaTypeCount(); ++i) container.mediaTypeAt(i);
    engine.record.take();
  });
}

void refuses(WatchedEngine& engine) {
  expectNoGrowth("refusing sources", [&] {
    for (const char* uri : {"", "file:///no/such.sub", "http://host/a", "file:///dev"}) {
      FormatRequirementList missing;
      engine.probe(uri, &missing);
      engine.open(uri);
    }
    engine.record.take();
  });
}

template <void (*kWork)(WatchedEngine&, const std::string&)>
void leavesNothing(const Subject& subject) {
  requireSamples(subject);
  for (const std::string& sample : subject.samples) {
    expectNoGrowth("it", [&] {
      WatchedEngine engine(subject);
      kWork(engine, sample);
    });
  }
}

void probeIt(WatchedEngine& engine, const std::string& sample) {
  FormatRequirementList missing;
  engine.probe(sourceUri(sample), &missing);
  engine.context.showsFormats = false;
  engine.probe(sourceUri(sample), &missing);
}

void playIt(WatchedEngine& engine, const std::string& sample) { readAll(engine.play(sample)); }

void playItTwice(WatchedEngine& engine, const std::string& sample) {
  readAll(engine.play(sample));
  engine.container().deactivate(true);
  static_cast<void>(engine.activate());
  readAll(engine.play(sample));
  engine.container().deactivate(false);
}

void letGoHalfway(WatchedEngine& engine, const std::string& sample) {
  StreamInterface& stream = engine.play(sample);
  readOne(stream);
  stream.seekStream(0, nullptr, true);
}

void readsOn(Playing& playing) {
  expectNoGrowth("reading to the end and seeking", [&] {
    readAnew(playing.stream);
    playing.stream.seekStream(0, nullptr, true);
    playing.record.take();
  });
}

void isNotified(Playing& playing) {
  const auto consumers = playing.controller.consumers();
  if (consumers.empty()) report(Outcome::kNotOffered, "it registers no consumer");
  expectNoGrowth("notifications", [&] {
    String page("windows-1250"), other("UTF-8");
    for (String* name : {&page, &other}) {
      const SettingValue value = SettingValue::string(name);
      (*consumers.begin())->settingChanged(codePageSetting(), &value);
    }
    readOne(playing.stream);
    playing.record.take();
  });
}

/// An output between others that nobody may touch.
template <typename Output>
struct Guarded {
  Output before, output, after;
  Guarded() { before = output = after = Output{}; }
  void expectGuards(const char* what) const {
    expect(before == Output{} && after == Output{}, std::string(what) + " wrote beside its output");
  }
};

void writesInside(Playing& playing) {
  StreamInterface& stream = playing.stream;
  Guarded<std::uint32_t> time;
  stream.getNextChunkTime(0, 0, &time.output);
  time.expectGuards("getNextChunkTime");
  stream.seekStream(0, &time.output, true);
  time.expectGuards("seekStream");
  Guarded<unsigned> rate;
  stream.framerate(&rate.output, &rate.output);
  rate.expectGuards("framerate");
  Guarded<std::uint64_t> size;
  playing.container().getFileSize(&size.output);
  size.expectGuards("getFileSize");
  Guarded<std::int32_t> number;
  playing.container().reservedSlot9(&number.output, &number.output);
  number.expectGuards("slot 9");
  Guarded<void*> found;
  playing.plugin->getInterface(kContainerInterfaceId, &found.output);
  found.expectGuards("getInterface");
}

constexpr ContractCheck kMemoryChecks[] = {
    {"memory.component", kGettingAComponent, "a component leaves nothing behind", makesAndReleases},
    {"memory.lookup", kGettingAComponent, "looking up interfaces leaves nothing behind", looksUp},
    {"memory.queries", kOwnership, "the container's answers are whole in the caller's hands",
     answers},
    {"memory.refusals", kOwnership, "sources that are refused leave nothing behind", refuses},
    {"memory.probe", kOwnership, "probing a sample leaves nothing behind", leavesNothing<probeIt>},
    {"memory.session", kOwnership, "playing a sample to its end leaves nothing behind",
     leavesNothing<playIt>},
    {"memory.session-twice", kOwnership, "playing it twice on one component leaves nothing behind",
     leavesNothing<playItTwice>},
    {"memory.session-halfway", kOwnership, "letting go halfway leaves nothing behind",
     leavesNothing<letGoHalfway>},
    {"memory.reading", kOwnership, "chunks that are given back leave nothing behind", readsOn},
    {"memory.notifications", kOwnership, "notifications leave nothing behind", isNotified},
    {"memory.outputs", kRecords, "outputs are written in their width and nothing beside them",
     writesInside},
};

}  // namespace

std::span<const ContractCheck> memoryChecks() { return kMemoryChecks; }

}  // namespace Ombe
