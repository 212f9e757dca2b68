// Every operation of the built plug-in, called by its place in its table, and the places in the
// engine's tables that the plug-in calls.
#include "support/slots.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#include "ombe_core/buffer_allocator.h"
#include "ombe_core/component_identifiers.h"
#include "ombe_core/image_properties.h"
#include "support/fakes.h"

namespace ombe_test {
namespace {

using namespace std::string_view_literals;
using namespace Ombe;  // NOLINT(google-build-using-namespace)

const std::string kFile = "{1}{1}1000\n{1000}{3000}A\n{5000}{6000}B\n";
constexpr FormatRequirement kText{"UTF8\0\0\0", {20, 4, 0}};
const Setting kRatio(MediaType::kSubtitle, "FrameRate", "Ratio");

/// What the operation at `slot` answers, as text and a blank.
template <typename Result, typename... Arguments>
std::string answer(void* object, std::size_t slot, Arguments... arguments) {
  const Result given = callSlot<Result>(object, slot, arguments...);
  if constexpr (requires { view(given); }) {
    return "'" + std::string(view(given)) + "' ";
  } else {
    const bool isFailure = static_cast<std::int64_t>(given) == kGeneralFailure;
    return (isFailure ? "fail" : std::to_string(given)) + " ";
  }
}

/// The same behind the number of the slot.
template <typename Result, typename... Arguments>
std::string ask(void* object, std::size_t slot, Arguments... arguments) {
  return std::to_string(slot) + "=" + answer<Result>(object, slot, arguments...);
}

/// Joined, in the order in which they were asked.
std::string all(std::initializer_list<std::string> answers) {
  std::string text;
  for (const std::string& answer : answers) text += answer;
  return text;
}

TEST(Component, AnswersItsTwoIdentifiersByTheirExactBytes) {
  FakeContext context;
  Component component(&context);
  void* const plugin = component.plugin;
  const auto lookUp = [&](std::string_view text) {
    const String identifier(text.data(), static_cast<std::uint32_t>(text.size()));
    void* found = &context;
    const auto status = callSlot<Status>(plugin, 7, &identifier, &found);
    EXPECT_EQ(status, found == nullptr ? kUnknownInterface : kSuccess) << text;
    return found;
  };
  EXPECT_EQ(lookUp(kContainerInterfaceId), component.container);
  EXPECT_EQ(lookUp(kSubtitleControlInterfaceId), component.control);
  const std::string base = "com.kelm.streamengine.interface.";
  for (const auto other :
       {"component"sv, "containe"sv, "container "sv, "container\0"sv, "Container"sv, "input"sv}) {
    EXPECT_EQ(lookUp(base + std::string(other)), nullptr) << other;
  }
  EXPECT_EQ(lookUp(""), nullptr);
  EXPECT_EQ(all({ask<int>(plugin, 4), ask<int>(plugin, 2), ask<int>(plugin, 3)}), "4=1 2=2 3=1 ");
  EXPECT_EQ(callSlot<const PluginInfo*>(plugin, 5)->size, sizeof(PluginInfo));
  EXPECT_EQ(callSlot<void*>(plugin, 6), &context);
}

/// The format's operations stand in two tables.
struct FormatSlots {
  void* table;
  std::size_t probe, reserved4, open, reserved6, format, count, typeAt, rankAt, rankOf, changed;
};

TEST(Component, AnswersForTheFormatInBothOfItsTables) {
  const TempFile file(kFile);
  const MediaSource source(toByteString(file.uri())), nothing(ByteString{});
  const ByteString plain = toByteString("text/plain"), sub = toByteString("text/X-sub");
  const SettingValue half = SettingValue::ratio({500, 1});
  Engine engine;
  engine.clock.now = 2000000;
  for (const auto& [t, probe, reserved4, open, reserved6, format, count, typeAt, rankAt, rankOf,
                    changed] :
       {FormatSlots{engine.component.plugin, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17},
        FormatSlots{engine.component.container, 3, 4, 5, 6, 20, 17, 18, 19, 16, 23}}) {
    FormatRequirementList missing;
    char name[] = "xxxxxxx";
    callSlot<void>(t, format, &name[0]);
    callSlot<void>(t, reserved4, 5);
    std::string answers = all({answer<Status>(t, reserved6, 5), answer<unsigned>(t, count)});
    for (const unsigned index : {0U, 1U, 2U, ~0U}) {
      answers += all({answer<ByteString>(t, typeAt, index), answer<int>(t, rankAt, index)});
    }
    for (engine.context.answer = true; missing.empty(); engine.context.answer = false) {
      answers += answer<bool>(t, probe, &source, 1, 2, &missing);
    }
    EXPECT_EQ(all({answers, answer<bool>(t, probe, &nothing, 1, 2, &missing),
                   answer<int>(t, rankOf, &plain), answer<int>(t, rankOf, &sub),
                   answer<Status>(t, open, &nothing), answer<Status>(t, open, &source)}),
              "fail 2 'text/x-sub' 1 'text/plain' 1 '' 0 '' 0 1 0 0 1 -1 fail 0 ");
    EXPECT_EQ(std::string_view(name, 8), "UTF8\0xx\0"sv);
    EXPECT_TRUE(missing.size() == 1 && std::memcmp(missing.data(), &kText, 20) == 0);
    engine.activate();
    engine.newestStream()->setTimeSource(&engine.clock);
    callSlot<void>(t, changed, &kRatio, &half);
    EXPECT_EQ(readOne(*engine.newestStream()), "2000+4000 A");
  }
  const SettingValue quarter = SettingValue::ratio({250, 1});
  callSlot<void>(engine.controller.consumers.at(0), 2, &kRatio, &quarter);
  EXPECT_EQ(readOne(*engine.newestStream()), "20000+4000 B");
}

TEST(Container, AnswersEverySlotInItsPlace) {
  const TempFile file(kFile);
  Engine engine(false);
  void* const c = engine.component.container;
  std::uint64_t size = 77;
  EXPECT_EQ(all({ask<ByteString>(c, 7), ask<UID>(c, 8), ask<Status>(c, 15, &size)}),
            "7='' 8=0 15=fail ");
  EXPECT_EQ(size, 77U);
  callSlot<void>(c, 2, &engine.host, UID{1} << 40);
  callSlot<void>(engine.component.control, 2, &engine.controller);
  callSlot<void>(c, 22, nullptr);  // keeps the controller that is there
  engine.host.nextUID = UID{1} << 32;
  EXPECT_EQ(callSlot<UIDList>(c, 11).head()->value, UID{1} << 32);
  EXPECT_EQ(engine.open(file.uri()), kSuccess);
  std::int32_t a = 7, b = 7;
  EXPECT_EQ(
      all({ask<UID>(c, 8), ask<Status>(c, 9, &a, &b), ask<Status>(c, 10),
           ask<ByteString>(c, 12, UID{5}), ask<Status>(c, 13, UID{0}),
           ask<Status>(c, 13, UID{1} << 32), ask<Status>(c, 15, nullptr), ask<Status>(c, 15, &size),
           ask<bool>(c, 21, -1), ask<ByteString>(c, 7)}),
      "8=1099511627776 9=0 10=0 12='' 13=fail 13=0 15=fail 15=0 21=0 7='" + file.path() + "' ");
  EXPECT_TRUE(a == 0 && b == 0 && size == kFile.size());
  ByteString out = toByteString("kept");
  EXPECT_EQ(all({ask<bool>(c, 24, "\xB3\xB9", 2U, &out), std::string(view(out))}), "24=0 kept");
  engine.controller.changeCodePage("windows-1250");
  EXPECT_EQ(all({ask<bool>(c, 24, "\xB3\xB9", 2U, &out), std::string(view(out))}),
            "24=1 \u0142\u0105");
  EXPECT_EQ(all({ask<Status>(c, 14, true), ask<Status>(c, 14, false)}), "14=0 14=0 ");
}

/// Counts what an allocator does to it.
struct WatchedChunk : MediaChunk {
  using MediaChunk::MediaChunk;
  ~WatchedChunk() override { *log += "gone"; }
  unsigned char* lock() override { return *log += "lock ", nullptr; }
  void unlock() override { *log += "unlock "; }
  std::string* log = nullptr;
};

TEST(Stream, AnswersEverySlotInItsPlace) {
  Engine engine;
  engine.clock.now = 100000;
  void* const s = engine.play(kFile);
  unsigned out = 7, other = 7;
  String language("kept"), region("kept");
  ByteString name;
  EXPECT_EQ(
      all({ask<int>(s, 2), ask<bool>(s, 3, &out, &other),
           ask<bool>(s, 4, nullptr, &language, &region), ask<bool>(s, 4, &name, nullptr, nullptr),
           ask<int>(s, 7), ask<Status>(s, 10, nullptr), ask<Status>(s, 10, &engine.clock),
           ask<Status>(s, 11), ask<int>(s, 14)}),
      "2=0 3=0 4=0 4=1 7=320 10=-1 10=0 11=0 14=0 ");
  EXPECT_TRUE(out == 7 && other == 7 && language == "kept" && region == "kept");
  EXPECT_EQ(view(name), "movie.sub");
  const auto* frame = callSlot<const ImageProperties*>(s, 6);
  EXPECT_TRUE(frame->frameWidth() == 640 && frame->frameHeight() == 480);
  EXPECT_EQ(std::memcmp(callSlot<const void*>(s, 5), &kText, 20), 0);
  EXPECT_EQ(callSlot<void*>(s, 8), s);
  EXPECT_EQ(callSlot<void*>(s, 9, 0U), nullptr);
  EXPECT_EQ(engine.newestStream()->containerUID(), 77U);

  MediaChunk* chunk = nullptr;
  callSlot<Status>(s, 15, &chunk);
  void* const allocator = &chunk->allocator();
  callSlot<void>(allocator, 5, chunk);
  callSlot<void>(allocator, 5, nullptr);
  for (const unsigned size : {0U, 1U}) {
    std::string log;
    auto* watched = new WatchedChunk(*static_cast<IBufferAllocator*>(allocator));
    watched->log = &log;
    watched->setBuffer(nullptr, size);
    callSlot<void>(allocator, 5, watched);
    EXPECT_EQ(log, size == 0 ? "gone" : "lock unlock gone");
  }
  const auto* value = static_cast<const std::uint32_t*>(allocator) + sizeof(void*) / 4;
  EXPECT_EQ(*value, 8U);
  callSlot<void>(allocator, 3, 9U);
  EXPECT_EQ(*value, 9U);
  EXPECT_EQ(callSlot<void*>(allocator, 4, 16U, 1U, 1U), nullptr);
  callSlot<void>(s, 20, 6);
  callSlot<void>(s, 22, 7);
  EXPECT_EQ(
      all({ask<bool>(allocator, 2, 1U), ask<Status>(s, 12, 9U, 3000U, nullptr),
           ask<Status>(s, 12, 9U, 3000U, &out), ask<Status>(s, 13, 3001U, nullptr, true),
           ask<Status>(s, 13, 3000U, &other, true), ask<Status>(s, 15, nullptr),
           ask<unsigned>(s, 16), ask<bool>(s, 17), ask<int>(s, 19), ask<bool>(s, 18, 0),
           ask<int>(s, 19), ask<Status>(s, 12, 9U, 0U, &out), ask<Status>(s, 13, 0U, &out, true),
           ask<int>(s, 21), ask<int>(s, 23), ask<bool>(s, 24, 1U)}),
      "2=0 12=fail 12=0 13=0 13=0 15=fail 16=3000 17=0 19=1000 18=1 19=0 12=fail 13=fail 21=6 23=7 "
      "24=0 ");
  EXPECT_EQ(std::pair(out, other), std::pair(5000U, 1000U));
  engine.host.keepsWithdrawn = true;
  EXPECT_EQ(engine.component.container->deactivate(false), kSuccess);
  void* const last = engine.host.withdrawn.at(0).release();
  const long before = liveAllocations();
  callSlot<void>(last, 1);
  EXPECT_LT(liveAllocations(), before);
}

TEST(Engine, RefusesBytesThatNoStringHolds) {
  // Cut to 32 bits this is 3, where a size has more of them.
  const std::size_t length = std::max<std::size_t>(std::size_t{ByteString::maximumLength} + 5, ~0U);
  EXPECT_THROW(toByteString({"abc", length}), std::bad_alloc);
  EXPECT_THROW(String("abc", ~0U), std::bad_alloc);  // and a NUL
}

TEST(Engine, EndsAReplacedLogSinkThatLogsItself) {
  const auto logAtTheEnd = [](void*) { Logger::instance().log("a", "b", 1, "c"); };
  Logger::instance().setSink(
      [last = std::shared_ptr<void>(nullptr, logAtTheEnd)](const LogRecord&) {});
  std::string text;
  Logger::instance().setSink([&](const LogRecord& record) { text = record.text; });
  EXPECT_EQ(text, "c");
  Logger::instance().setSink({});
}

TEST(Component, IsDestroyedThroughAnyOfItsTables) {
  FakeContext context;
  const EntryPoint enter = entryPoint();  // loading leaves the module's own allocations
  const long before = liveAllocations();
  for (const int table : {0, 1, 2, 3}) {
    for (const std::size_t slot : {0U, 1U}) {  // the object alone, the object and its storage
      Plugin* plugin = nullptr;
      enter(&context, &plugin);
      void* tables[] = {plugin, nullptr, nullptr, nullptr};
      plugin->getInterface(kContainerInterfaceId, &tables[1]);
      plugin->getInterface(kSubtitleControlInterfaceId, &tables[2]);
      tables[3] = static_cast<void**>(tables[2]) + 1;  // the setting consumer stands behind it
      callSlot<void>(tables[table], slot);
      if (slot == 0) ::operator delete(plugin);
      EXPECT_EQ(liveAllocations(), before) << table;
    }
  }
}

/// A pointer to a virtual function is its offset in the table, plus one.
template <typename... Operations>
std::vector<std::size_t> slotsOf(Operations... operations) {
  return {std::bit_cast<std::array<std::size_t, 2>>(operations)[0] / sizeof(void*)...};
}

/// The operations that the plug-in is seen to call by name.
TEST(Engine, IsCalledThroughItsPublishedSlots) {
  using Host = ContainerHost;
  using Controller = SubtitleController;
  const std::vector<std::size_t> published = {2, 3, 4, 6, 8, 22, 23, 24, 2, 13, 14, 8, 2, 2};
  EXPECT_EQ(slotsOf(&Host::getValue, &Host::setValue, &Host::newUID, &Host::preferredLanguage,
                    &Host::getTimeOffset, &Host::announceStream, &Host::withdrawStream,
                    &Host::selectStream, &Controller::getValue, &Controller::registerConsumer,
                    &Controller::unregisterConsumer, &PluginContext::supportsFormat,
                    &TimeSource::currentTime, &SettingConsumer::settingChanged),
            published);
}

}  // namespace
}  // namespace ombe_test
