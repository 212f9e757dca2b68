// Every allocation on the engine's road through the built plug-in fails: one alone, then one with
// all that follow it. OMBE_SHOW_SWEEP=1 in the environment prints what came of it.
#include <dlfcn.h>
#include <malloc.h>
#include <unicode/uclean.h>
#include <unicode/ucnv.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <new>
#include <thread>

#include "ombe_core/logger.h"
#include "ombe_core/media_source.h"
#include "support/allocation_faults.h"
#include "support/fakes.h"

namespace ombe_test {
namespace {

using Ombe::kSuccess;
using Ombe::SettingValue;

long icuRefusals = 0;

void* icuAllocate(const void* /*context*/, std::size_t size) {
  void* block = ::operator new(size, std::nothrow);
  if (block == nullptr) ++icuRefusals;
  return block;
}

void icuRelease(const void* /*context*/, void* block) { ::operator delete(block); }

void* icuReallocate(const void* context, void* old, std::size_t size) {
  void* block = icuAllocate(context, size);
  if (block == nullptr || old == nullptr) return block;
  std::memcpy(block, old, std::min(::malloc_usable_size(old), size));
  icuRelease(context, old);
  return block;
}

/// A function of the very library that the plug-in binds.
template <typename Function>
Function icuFunction(const std::string& name) {
  const std::string version = std::to_string(OMBE_ICU_VERSION);
  static void* const library = ::dlopen(("libicuuc.so." + version).c_str(), RTLD_NOW);
  return reinterpret_cast<Function>(::dlsym(library, (name + "_" + version).c_str()));
}

enum Stage { kFresh, kAttached, kOpen, kActive };

/// An engine that has come as far as a stage of its road, and the operations that lead on from
/// there. Each operation says whether it was done.
struct Road {
  Road(Stage stage, const std::string& uri, const char* codePage)
      : engine(std::make_unique<Engine>(stage >= kAttached)), source(Ombe::toByteString(uri)) {
    if (*codePage != 0) engine->host.settings.setString("CodePage", "Name", codePage);
    engine->clock.now = 2147483000;
    if (stage >= kOpen) open();
    if (stage >= kActive) activate();
  }
  Ombe::ContainerInterface& container() const { return *engine->component.container; }

  bool makeAnother() {
    Ombe::Plugin* made = nullptr;
    return entryPoint()(&engine->context, &made) == kSuccess && made->release() == 0;
  }
  bool attach() {
    container().attach(&engine->host, 77);
    engine->component.control->setSubtitleController(&engine->controller);
    return true;
  }
  bool probe() { return container().probe(source, 1, 2, &missing); }
  bool probeForLess() {
    engine->context.answer = false;
    return !probe() && missing.size() == 1;
  }
  bool open() { return isOpen = container().open(source) == kSuccess; }
  bool listPrograms() { return container().getProgramUIDs().head()->value == 2; }
  bool activate() {
    const bool done = engine->activate() == kSuccess;
    stream = engine->newestStream();
    return done && stream->setTimeSource(&engine->clock) == kSuccess;
  }
  bool seek() { return stream->seekStream(2500, &found, false) == kSuccess && found == 3000; }
  bool reverse() { return stream->setReadSpeed(-1000); }
  bool change(const Ombe::Setting& setting, const SettingValue& value) {
    engine->controller.consumers.front()->settingChanged(setting, &value);
    return true;
  }
  bool changeRate() { return change(rateSetting, SettingValue::ratio({500, 1})); }
  bool changeCodePage() { return change(nameSetting, SettingValue::string(&otherPage)); }
  bool deactivate() {
    stream = nullptr;
    isOpen = false;
    return container().deactivate(false) == kSuccess;
  }
  std::string read() { return readOne(*stream); }

  /// Goes the rest of the road, and tells what is shown.
  std::string played() {
    if (container().getContainerUID() == 0) attach();
    EXPECT_TRUE(isOpen || open());
    EXPECT_TRUE(stream != nullptr || activate());
    stream->setReadSpeed(1000);
    stream->resetStream();
    return readAll(*stream);
  }

  std::unique_ptr<Engine> engine;
  const Ombe::MediaSource source;
  Ombe::FormatRequirementList missing;
  Ombe::StreamInterface* stream = nullptr;
  bool isOpen = false;
  std::uint32_t found = 77;
  Ombe::String otherPage = "windows-1251";
  Ombe::Setting rateSetting{Ombe::MediaType::kSubtitle, "FrameRate", "Ratio"};
  Ombe::Setting nameSetting{Ombe::MediaType::kSubtitle, "CodePage", "Name"};
};

/// "done", "refused", or what was read.
struct Answer {
  Answer(bool done) : text(done ? "done" : "refused") {}  // NOLINT(google-explicit-constructor)
  Answer(std::string read) : text(std::move(read)) {}     // NOLINT(google-explicit-constructor)
  std::string text;
};

struct Operation {
  const char* name;
  Stage before;
  const char* codePage;
  std::function<Answer(Road&)> run;
  bool allocates;
  std::string played;  // at the end of the road
  std::string lesser;  // what it may answer as well when memory is short
  std::string answer = "done";
};

struct Tally {
  long points = 0, threw = 0, lesser = 0, unharmed = 0;
};

/// Whether there was an `nth` allocation to fail. Leaves nothing behind.
bool failNth(const Operation& operation, const std::string& uri, long nth, FaultMode mode,
             Tally& tally) {
  Road road(operation.before, uri, operation.codePage);
  std::string answer = "threw";
  bool happened = false;
  {
    const AllocationFault fault(nth, mode);
    try {
      answer = operation.run(road).text;
    } catch (const std::bad_alloc&) {
      EXPECT_EQ(road.found, 77U);
    }
    happened = fault.happened();
  }
  // A lock left behind stops this for good.
  std::thread([&] { road.container().activateProgram(0); }).join();
  if (answer != operation.answer) {
    EXPECT_TRUE(happened && (answer == "threw" || answer == operation.lesser)) << answer;
    // An entry delivered is delivered, whatever became of its text.
    if (answer != "threw" && road.stream != nullptr) road.stream->resetStream();
    EXPECT_EQ(operation.run(road).text, operation.answer);
  }
  EXPECT_EQ(road.played(), operation.played);
  const AllocationFault none(1, FaultMode::kFromThereOn);
  road.engine.reset();
  EXPECT_FALSE(none.happened()) << "deactivation or destruction needed memory";
  if (!happened) return false;
  ++tally.points;
  ++(answer == "threw" ? tally.threw : answer == operation.answer ? tally.unharmed : tally.lesser);
  return true;
}

void sweep(const Operation& operation, const std::string& uri, FaultMode mode, bool isWarm) {
  Tally tally;
  const long refusedBefore = icuRefusals;
  const auto dropTables = icuFunction<decltype(&::ucnv_flushCache)>("ucnv_flushCache");
  for (bool isMore = true; isMore;) {
    dropTables();
    const long live = liveAllocations();
    isMore = failNth(operation, uri, tally.points + 1, mode, tally);
    dropTables();
    EXPECT_TRUE(!isWarm || liveAllocations() == live) << "leaked " << liveAllocations() - live;
    if (testing::Test::HasFailure()) FAIL() << "at " << operation.name << ' ' << tally.points;
  }
  EXPECT_EQ(tally.points > 0, operation.allocates) << operation.name;
  if (!isWarm || std::getenv("OMBE_SHOW_SWEEP") == nullptr) return;
  std::printf("%-22s %-6s points %2ld (ICU's %ld), threw %2ld, lesser answer %ld, unharmed %ld\n",
              operation.name, mode == FaultMode::kOnce ? "one" : "onward", tally.points,
              icuRefusals - refusedBefore, tally.threw, tally.lesser, tally.unharmed);
}

TEST(Allocation, ThatFailsIsAnsweredForLosesNothingAndCanBeTriedAgain) {
  UErrorCode error = U_ZERO_ERROR;
  icuFunction<decltype(&::u_setMemoryFunctions)>("u_setMemoryFunctions")(
      nullptr, icuAllocate, icuReallocate, icuRelease, &error);
  ASSERT_FALSE(U_FAILURE(error));
  const std::string longLine(2000, 'x');
  const auto entry = [](int start, int scale, const std::string& text) {
    return std::to_string(scale * start) + "+" + std::to_string(scale * 1000) + " " + text;
  };
  const auto shown = [&](int scale, const std::string& text) {
    return entry(1000, scale, text + "|" + longLine) + " ; " +
           entry(3000, scale, "<i>" + text + "</i>");
  };
  const TempFile plain("{1}{1}1000\n{3000}{4000}/\xB3\xB9\n{1000}{2000}\xB3\xB9|" + longLine);
  std::string units = "\xFF\xFE";
  for (const char c : "{1}{1}1000\n{3000}{4000}/ab\n{1000}{2000}ab|" + longLine) units += {c, '\0'};
  const TempFile wide(units);
  const std::string raw = shown(1, "\xB3\xB9"), latin = shown(1, "\u0142\u0105");
  const auto first = [](const std::string& all) { return all.substr(0, all.find(" ; ")); };
  const Operation operations[] = {
      {"create, destroy", kFresh, "", &Road::makeAnother, true, raw, ""},
      {"attach", kFresh, "", &Road::attach, false, raw, ""},
      {"probe", kAttached, "", &Road::probe, true, raw, "refused"},
      {"probe, converting", kAttached, "CP1250", &Road::probe, true, latin, "refused"},
      {"probe, format lacking", kAttached, "", &Road::probeForLess, true, raw, "refused"},
      {"open", kAttached, "", &Road::open, true, raw, "refused"},
      {"open, converting", kAttached, "", &Road::open, true, shown(1, "ab"), "refused"},
      {"program UIDs", kOpen, "", &Road::listPrograms, true, raw, ""},
      {"activate", kOpen, "", &Road::activate, true, raw, ""},
      {"seek", kActive, "", &Road::seek, true, raw, ""},
      {"read", kActive, "", &Road::read, true, raw, "", first(raw)},
      {"read, converting", kActive, "CP1250", &Road::read, true, latin, first(raw), first(latin)},
      {"change of speed", kActive, "", &Road::reverse, true, raw, ""},
      {"change of rate", kActive, "", &Road::changeRate, false, shown(2, "\xB3\xB9"), ""},
      {"change of code page", kActive, "CP1250", &Road::changeCodePage, true,
       shown(1, "\u0456\u2116"), ""},
      {"deactivate", kActive, "", &Road::deactivate, false, raw, ""},
  };
  Ombe::Logger::instance().setSink([](const Ombe::LogRecord&) {});
  // The first time around also makes what lives as long as the process.
  for (const bool isWarm : {false, true}) {
    for (const Operation& operation : operations) {
      const TempFile& file = operation.name == std::string("open, converting") ? wide : plain;
      for (const auto mode : {FaultMode::kOnce, FaultMode::kFromThereOn}) {
        sweep(operation, file.uri(), mode, isWarm);
      }
    }
  }
  Ombe::Logger::instance().setSink({});
}

}  // namespace
}  // namespace ombe_test
