// Every allocation on the engine's road through the built plug-in fails: one alone, then one with
// all that follow it.
#include <dlfcn.h>
#include <unicode/uclean.h>
#include <unicode/ucnv.h>

#include <algorithm>
#include <cstdlib>
#include <new>
#include <set>
#include <thread>

#include "ombe_core/logger.h"
#include "ombe_core/media_source.h"
#include "support/allocation_faults.h"
#include "support/fakes.h"

namespace ombe_test {
namespace {

using Ombe::kSuccess;
using Ombe::Setting;
using Ombe::SettingValue;

/// A function of the very library that the plug-in binds.
template <typename Function>
Function icuFunction(const std::string& name) {
  const std::string version = std::to_string(OMBE_ICU_VERSION);
  static void* const library = ::dlopen(("libicuuc.so." + version).c_str(), RTLD_NOW);
  return reinterpret_cast<Function>(::dlsym(library, (name + "_" + version).c_str()));
}

/// Makes the library forget the tables that no converter uses.
void dropTables() { icuFunction<decltype(&::ucnv_flushCache)>("ucnv_flushCache")(); }

constexpr const char* kRaw = "\xB3\xB9";

/// Files with two entries, and their text when it is read with a code page and after a change of
/// it.
struct Road {
  const char* name;
  const TempFile& file;
  const char* codePage;
  std::string text, laterText;
  long openBuffers, readBuffers;  // of the conversion when the file is read, or else each entry
};

enum Outcome { kDone, kRefused, kThrew };

/// One journey down a road, during which the `nth` allocation of one step fails.
struct Journey {
  /// Every step is done in the end; nothing is left behind.
  void travel();
  void play(Ombe::StreamInterface& stream);
  /// Does `run`, which says whether it was done, once more when it was not.
  template <typename Run>
  void step(const char* stepName, long caughtHere, Run run) {
    if (steps++ == failing) {
      name = stepName;
      caught = caughtHere;
      outcome = kThrew;
      dropTables();
      {
        const AllocationFault fault(nth, mode);
        try {
          outcome = run() ? kDone : kRefused;
        } catch (const std::bad_alloc&) {  // nothing but memory may be missing
        }
        hasFailed = fault.happened();
      }
      // A lock left behind stops this for good.
      std::thread([this] { engine->component.container->activateProgram(0); }).join();
      if (outcome == kDone) return;
      EXPECT_TRUE(hasFailed && (outcome == kThrew || caught > 0)) << outcome;
    }
    EXPECT_TRUE(run()) << stepName;
  }

  const Road& road;
  const int failing;
  const long nth;
  const FaultMode mode;
  const char* name = nullptr;  // of the failing step; null behind the last one
  bool hasFailed = false;      // false when the step has fewer allocations
  Outcome outcome = kDone;
  long caught = 0;  // allocations for which the step catches a failure, and is done or refused
  int steps = 0;
  std::unique_ptr<Engine> engine = std::make_unique<Engine>(false);
};

void Journey::travel() {
  Ombe::ContainerInterface& container = *engine->component.container;
  const Ombe::MediaSource source(Ombe::toByteString(road.file.uri()));
  if (*road.codePage != 0) engine->host.settings.setString("CodePage", "Name", road.codePage);
  step("create, destroy", 0, [&] {
    Ombe::Plugin* made = nullptr;
    return entryPoint()(&engine->context, &made) == kSuccess && made->release() == 0;
  });
  step("attach", 0, [&] {
    container.attach(&engine->host, 77);
    engine->component.control->setSubtitleController(&engine->controller);
    return true;
  });
  const long caughtProbing = 1 + road.openBuffers + road.readBuffers;
  step("probe", caughtProbing, [&] { return container.probe(source, 1, 2, nullptr); });
  engine->context.answer = false;
  step("probe, format lacking", caughtProbing, [&] {
    Ombe::FormatRequirementList missing;
    return !container.probe(source, 1, 2, &missing) && missing.size() == 1;
  });
  step("open", 2 + road.openBuffers, [&] { return container.open(source) == kSuccess; });
  Ombe::UID program = 0;
  step("programs", 0, [&] { return (program = container.getProgramUIDs().head()->value) != 0; });
  step("activate", 0, [&] { return container.activateProgram(program) == kSuccess; });
  EXPECT_EQ(engine->host.streams.size(), 1U) << "published more than once";
  play(*engine->newestStream());
  step("deactivate", 0, [&] { return container.deactivate(false) == kSuccess; });
  const AllocationFault none(1, FaultMode::kFromThereOn);
  engine.reset();
  EXPECT_FALSE(none.happened()) << "destruction needed memory";
}

void Journey::play(Ombe::StreamInterface& stream) {
  engine->clock.now = 2147483000;
  stream.setTimeSource(&engine->clock);
  Ombe::SettingConsumer& consumer = *engine->controller.consumers.front();
  Ombe::String page = "windows-1251";
  const Setting pageSetting(Ombe::MediaType::kSubtitle, "CodePage", "Name");
  const Setting rateSetting(Ombe::MediaType::kSubtitle, "FrameRate", "Ratio");
  const SettingValue pageValue = SettingValue::string(&page), rate = SettingValue::ratio({500, 1});
  std::uint32_t found = 77;
  step("seek", 0, [&] {
    EXPECT_EQ(found, 77U);
    return stream.seekStream(2500, &found, false) == kSuccess && found == 3000;
  });
  const auto read = [&] {
    const std::string entry = readOne(stream);
    const FaultPause pause;
    if (entry == "3000+1000 <i>" + road.text + "</i>") return true;
    EXPECT_EQ(entry, std::string("3000+1000 <i>") + kRaw + "</i>");
    stream.seekStream(2500, nullptr, false);  // delivered is delivered, whatever became of the text
    return false;
  };
  step("read", road.readBuffers, read);
  step("change of speed", 0, [&] { return stream.setReadSpeed(-1000); });
  step("change of code page", 0,
       [&] { return consumer.settingChanged(pageSetting, &pageValue), true; });
  step("change of rate", 0, [&] { return consumer.settingChanged(rateSetting, &rate), true; });
  stream.setReadSpeed(1000);
  stream.resetStream();
  EXPECT_TRUE(readOne(stream).starts_with("2000+2000 " + road.laterText + "|xx"));
  EXPECT_EQ(readAll(stream), "6000+2000 <i>" + road.laterText + "</i>");
}

long icuRefusals = 0;

void* icuAllocate(const void* /*context*/, std::size_t size) {
  void* block = ::operator new(size, std::nothrow);
  icuRefusals += block == nullptr ? 1 : 0;
  return block;
}

/// Nothing on this road has a block grow.
void* icuReallocate(const void* /*context*/, void* /*block*/, std::size_t /*size*/) {
  std::abort();
}

void icuRelease(const void* /*context*/, void* block) { ::operator delete(block); }

/// Whether the road has a step of that number.
bool sweep(const Road& road, int step, FaultMode mode, bool isWarm) {
  static const std::set<std::string> undemanding = {"attach", "change of rate", "deactivate"};
  long points = 0, outcomes[3] = {};
  const long refusedBefore = icuRefusals;
  const char* name = nullptr;
  long caught = 0;
  for (bool isMore = true; isMore && !testing::Test::HasFailure();) {
    dropTables();
    const long live = liveAllocations();
    Journey journey{road, step, points + 1, mode};
    journey.travel();
    dropTables();
    name = journey.name;
    caught = journey.caught;
    EXPECT_TRUE(!isWarm || liveAllocations() == live) << "leaked " << liveAllocations() - live;
    EXPECT_FALSE(testing::Test::HasFailure()) << road.name << ", " << name << ' ' << points + 1;
    isMore = journey.hasFailed;
    points += isMore ? 1 : 0;
    outcomes[journey.outcome] += isMore ? 1 : 0;
  }
  if (name == nullptr || testing::Test::HasFailure()) return false;
  const long icuPoints = icuRefusals - refusedBefore;
  EXPECT_EQ(points == 0, undemanding.contains(name)) << name;
  EXPECT_TRUE(mode != FaultMode::kOnce ||
              std::max(outcomes[kRefused], outcomes[kDone]) - icuPoints >= caught)
      << name;
  return true;
}

/// In a process of its own, since the library is bound once: behind the copy of the code page's
/// name come the three allocations of the binding.
[[noreturn]] void readWhileBinding(long nth) {
  Engine engine;
  engine.clock.now = 9999;
  engine.host.settings.setString("CodePage", "Name", "windows-1250");
  Ombe::StreamInterface* stream = engine.play(std::string("{1}{1}1000\n{1000}{3000}") + kRaw);
  {
    const AllocationFault fault(nth, FaultMode::kOnce);
    EXPECT_EQ(readOne(*stream), std::string("1000+2000 ") + kRaw);
  }
  stream->resetStream();
  EXPECT_EQ(readOne(*stream), "1000+2000 \u0142\u0105");
  std::_Exit(testing::Test::HasFailure() ? 1 : 0);
}

TEST(Allocation, ThatFailsWhileTheConverterLibraryIsBoundLeavesTextUndecoded) {
  for (const long nth : {2, 3, 4}) {
    EXPECT_EXIT(readWhileBinding(nth), testing::ExitedWithCode(0), "") << nth;
  }
}

TEST(Allocation, ThatFailsIsAnsweredForLosesNothingAndCanBeTriedAgain) {
  UErrorCode error = U_ZERO_ERROR;
  icuFunction<decltype(&::u_setMemoryFunctions)>("u_setMemoryFunctions")(
      nullptr, icuAllocate, icuReallocate, icuRelease, &error);
  ASSERT_FALSE(U_FAILURE(error));
  const auto fileOf = [](const std::string& text) {
    return "{1}{1}1000\n{3000}{4000}/" + text + "\n{1000}{2000}" + text + "|" +
           std::string(2000, 'x');
  };
  std::string units = "\xFF\xFE";
  for (const char c : fileOf("ab")) units += {c, '\0'};
  const TempFile plain(fileOf(kRaw)), wide(units);
  const Road roads[] = {{"plain", plain, "", kRaw, "\u0456\u2116", 0, 0},
                        {"converted", plain, "windows-1250", "\u0142\u0105", "\u0456\u2116", 0, 2},
                        {"signed", wide, "", "ab", "ab", 2, 0}};
  Ombe::Logger::instance().setSink([](const Ombe::LogRecord&) {});
  // The first time around also makes what lives as long as the process.
  for (const bool isWarm : {false, true}) {
    for (const Road& road : roads) {
      for (const auto mode : {FaultMode::kOnce, FaultMode::kFromThereOn}) {
        for (int step = 0; sweep(road, step, mode, isWarm);) ++step;
      }
    }
  }
  Ombe::Logger::instance().setSink({});
  EXPECT_GT(icuRefusals, 0);
}

}  // namespace
}  // namespace ombe_test
