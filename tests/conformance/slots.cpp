// Every operation of the built plug-in, called by its place in its table, and the places in the
// engine's tables that the plug-in calls.
#include "support/slots.h"

#include <gtest/gtest.h>

#include <cstring>

#include "ombe_core/buffer_allocator.h"
#include "ombe_core/component_identifiers.h"
#include "ombe_core/image_properties.h"
#include "ombe_core/media_source.h"
#include "support/allocation_faults.h"
#include "support/fakes.h"

namespace ombe_test {
namespace {

using namespace std::string_view_literals;
using Ombe::ByteString;
using Ombe::kContainerInterfaceId;
using Ombe::kSubtitleControlInterfaceId;
using Ombe::SettingValue;
using Ombe::Status;
using Ombe::String;
using Ombe::UID;

const std::string kFile = "{1}{1}1000\n{1000}{3000}A\n{5000}{6000}B\n";
constexpr Ombe::FormatRequirement kText{"UTF8\0\0\0", {20, 4, 0}};
const Ombe::Setting kRatio(Ombe::MediaType::kSubtitle, "FrameRate", "Ratio");

struct Table {
  void* object;

  /// What the operation at `slot` answers, as text and a blank.
  template <typename Result, typename... Arguments>
  [[nodiscard]] std::string ask(std::size_t slot, Arguments... arguments) const {
    const Result answer = callSlot<Result>(object, slot, arguments...);
    if constexpr (requires { view(answer); }) {
      return "'" + std::string(view(answer)) + "' ";
    } else {
      const bool isFailure = static_cast<std::int64_t>(answer) == Ombe::kGeneralFailure;
      return (isFailure ? "fail" : std::to_string(answer)) + " ";
    }
  }
};

/// Joined, in the order in which they were asked.
std::string all(std::initializer_list<std::string> answers) {
  std::string text;
  for (const std::string& answer : answers) text += answer;
  return text;
}

TEST(Component, AnswersItsTwoIdentifiersByTheirExactBytes) {
  FakeContext context;
  Component component(&context);
  const Table plugin{component.plugin};
  const auto lookUp = [&](std::string_view text) {
    const String identifier(text.data(), static_cast<std::uint32_t>(text.size()));
    void* found = &context;
    const auto status = callSlot<Status>(plugin.object, 7, &identifier, &found);
    EXPECT_EQ(status, found == nullptr ? Ombe::kUnknownInterface : Ombe::kSuccess) << text;
    return found;
  };
  EXPECT_EQ(lookUp(kContainerInterfaceId), component.container);
  EXPECT_EQ(lookUp(kSubtitleControlInterfaceId), component.control);
  for (const auto other :
       {""sv, "com.kelm.streamengine.interface.containe"sv,
        "com.kelm.streamengine.interface.container "sv, "com.kelm.streamengine.interface.input"sv,
        "com.kelm.streamengine.interface.component"sv,
        "com.kelm.streamengine.interface.container\0"sv,
        "com.kelm.streamengine.interface.Container"sv}) {
    EXPECT_EQ(lookUp(other), nullptr) << other;
  }
  EXPECT_EQ(all({plugin.ask<int>(4), plugin.ask<int>(2), plugin.ask<int>(3)}), "1 2 1 ");
  EXPECT_EQ(callSlot<const Ombe::PluginInfo*>(plugin.object, 5)->size, sizeof(Ombe::PluginInfo));
  EXPECT_EQ(callSlot<void*>(plugin.object, 6), &context);
}

/// The format's operations stand in two tables.
struct FormatSlots {
  Table table;
  std::size_t probe, reserved4, open, reserved6, format, count, typeAt, rankAt, rankOf, changed;
};

TEST(Component, AnswersForTheFormatInBothOfItsTables) {
  const TempFile file(kFile);
  const Ombe::MediaSource source(Ombe::toByteString(file.uri())), nothing(ByteString{});
  const ByteString plain = Ombe::toByteString("text/plain"), sub = Ombe::toByteString("text/X-sub");
  const SettingValue half = SettingValue::ratio({500, 1});
  Engine engine;
  engine.clock.now = 2000000;
  for (const auto& [t, probe, reserved4, open, reserved6, format, count, typeAt, rankAt, rankOf,
                    changed] :
       {FormatSlots{{engine.component.plugin}, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17},
        FormatSlots{{engine.component.container}, 3, 4, 5, 6, 20, 17, 18, 19, 16, 23}}) {
    Ombe::FormatRequirementList missing;
    char name[] = "xxxxxxx";
    callSlot<void>(t.object, format, &name[0]);
    callSlot<void>(t.object, reserved4, 5);
    std::string answers = all({t.ask<Status>(reserved6, 5), t.ask<unsigned>(count)});
    for (const unsigned index : {0U, 1U, 2U, ~0U}) {
      answers += all({t.ask<ByteString>(typeAt, index), t.ask<int>(rankAt, index)});
    }
    for (engine.context.answer = true; missing.empty(); engine.context.answer = false) {
      answers += t.ask<bool>(probe, &source, 1, 2, &missing);
    }
    EXPECT_EQ(all({answers, t.ask<bool>(probe, &nothing, 1, 2, &missing),
                   t.ask<int>(rankOf, &plain), t.ask<int>(rankOf, &sub),
                   t.ask<Status>(open, &nothing), t.ask<Status>(open, &source)}),
              "fail 2 'text/x-sub' 1 'text/plain' 1 '' 0 '' 0 1 0 0 1 -1 fail 0 ");
    EXPECT_EQ(std::string_view(name, 8), "UTF8\0xx\0"sv);
    EXPECT_TRUE(missing.size() == 1 && std::memcmp(missing.data(), &kText, 20) == 0);
    engine.activate();
    engine.newestStream()->setTimeSource(&engine.clock);
    callSlot<void>(t.object, changed, &kRatio, &half);
    EXPECT_EQ(readOne(*engine.newestStream()), "2000+4000 A");
  }
  callSlot<void>(engine.controller.consumers.at(0), 2, &kRatio, &half);
  EXPECT_EQ(readOne(*engine.newestStream()), "10000+2000 B");
}

TEST(Container, AnswersEverySlotInItsPlace) {
  const TempFile file(kFile);
  Engine engine(false);
  const Table c{engine.component.container};
  const auto programs = [&] { return callSlot<Ombe::UIDList>(c.object, 11).head()->value; };
  std::uint64_t size = 77;
  EXPECT_EQ(all({c.ask<ByteString>(7), c.ask<UID>(8), c.ask<Status>(15, &size)}), "'' 0 fail ");
  EXPECT_TRUE(size == 77 && programs() == Ombe::kNoUID);
  callSlot<void>(c.object, 2, &engine.host, UID{1} << 40);
  callSlot<void>(c.object, 22, &engine.controller);
  callSlot<void>(engine.component.control, 2, nullptr);  // keeps the controller that is there
  engine.host.nextUID = UID{1} << 32;
  EXPECT_EQ(programs(), UID{1} << 32);
  EXPECT_EQ(engine.open(file.uri()), Ombe::kSuccess);
  std::int32_t a = 7, b = 7;
  EXPECT_EQ(all({c.ask<UID>(8), c.ask<Status>(9, &a, &b), c.ask<Status>(10),
                 c.ask<ByteString>(12, UID{5}), c.ask<Status>(13, UID{0}),
                 c.ask<Status>(13, UID{1} << 32), c.ask<Status>(15, nullptr),
                 c.ask<Status>(15, &size), c.ask<bool>(21, -1), c.ask<ByteString>(7)}),
            "1099511627776 0 0 '' fail 0 fail 0 0 '" + file.path() + "' ");
  EXPECT_TRUE(a == 0 && b == 0 && size == kFile.size());
  ByteString out = Ombe::toByteString("kept");
  EXPECT_EQ(all({c.ask<bool>(24, "\xB3\xB9", 2U, &out), std::string(view(out))}), "0 kept");
  engine.controller.changeCodePage("windows-1250");
  EXPECT_EQ(all({c.ask<bool>(24, "\xB3\xB9", 2U, &out), std::string(view(out))}), "1 \u0142\u0105");
  EXPECT_EQ(all({c.ask<Status>(14, true), c.ask<Status>(14, false)}), "0 0 ");
}

TEST(Stream, AnswersEverySlotInItsPlace) {
  Engine engine;
  engine.clock.now = 100000;
  const Table s{engine.play(kFile)};
  unsigned out = 7, other = 7;
  String language("kept"), region("kept");
  ByteString name;
  EXPECT_EQ(
      all({s.ask<int>(2), s.ask<bool>(3, &out, &other), s.ask<bool>(4, nullptr, &language, &region),
           s.ask<bool>(4, &name, nullptr, nullptr), s.ask<int>(7), s.ask<Status>(10, nullptr),
           s.ask<Status>(10, &engine.clock), s.ask<Status>(11), s.ask<int>(14)}),
      "0 0 0 1 320 -1 0 0 0 ");
  EXPECT_TRUE(out == 7 && other == 7 && language == "kept" && region == "kept");
  EXPECT_EQ(view(name), "movie.sub");
  const auto* frame = callSlot<const Ombe::ImageProperties*>(s.object, 6);
  EXPECT_TRUE(frame->frameWidth() == 640 && frame->frameHeight() == 480);
  EXPECT_EQ(std::memcmp(callSlot<const void*>(s.object, 5), &kText, 20), 0);
  EXPECT_EQ(callSlot<void*>(s.object, 8), s.object);
  EXPECT_EQ(callSlot<void*>(s.object, 9, 0U), nullptr);
  EXPECT_EQ(engine.newestStream()->containerUID(), 77U);

  const long before = liveAllocations();
  Ombe::MediaChunk* chunk = nullptr;
  callSlot<Status>(s.object, 15, &chunk);
  const long delivered = liveAllocations();
  const Table allocator{&chunk->allocator()};
  callSlot<void>(allocator.object, 5, chunk);
  EXPECT_EQ(std::pair(delivered, liveAllocations()), std::pair(before + 2, before));
  callSlot<void>(allocator.object, 5, nullptr);
  callSlot<void>(allocator.object, 3, 9U);
  EXPECT_EQ(callSlot<void*>(allocator.object, 4, 16U, 1U, 1U), nullptr);

  callSlot<void>(s.object, 20, 6);
  callSlot<void>(s.object, 22, 7);
  EXPECT_EQ(all({allocator.ask<bool>(2, 1U), s.ask<Status>(12, 9U, 3000U, nullptr),
                 s.ask<Status>(12, 9U, 3000U, &out), s.ask<Status>(13, 3001U, nullptr, true),
                 s.ask<Status>(13, 3000U, &other, true), s.ask<Status>(15, nullptr),
                 s.ask<unsigned>(16), s.ask<bool>(17), s.ask<int>(19), s.ask<bool>(18, 0),
                 s.ask<int>(19), s.ask<Status>(12, 9U, 0U, &out), s.ask<Status>(13, 0U, &out, true),
                 s.ask<int>(21), s.ask<int>(23), s.ask<bool>(24, 1U)}),
            "0 fail 0 0 0 fail 3000 0 1000 1 0 fail fail 6 7 0 ");
  EXPECT_EQ(std::pair(out, other), std::pair(5000U, 1000U));
}

TEST(Component, IsDestroyedThroughAnyOfItsTables) {
  FakeContext context;
  const Ombe::EntryPoint enter = entryPoint();  // loading leaves the module's own allocations
  const long before = liveAllocations();
  for (const int table : {0, 1, 2, 3}) {
    for (const std::size_t slot : {0U, 1U}) {  // the object alone, the object and its storage
      Ombe::Plugin* plugin = nullptr;
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

/// The operations that the plug-in is seen to call by name stand at these places.
TEST(Engine, IsCalledThroughItsPublishedSlots) {
  Engine engine;
  engine.host.offset = 2.5;
  engine.host.language = "de";
  engine.host.keepsWithdrawn = true;
  engine.clock.now = -5;
  const Table host{&engine.host}, controller{&engine.controller};
  const SettingValue stored = SettingValue::ratio({3, 4});
  SettingValue read;
  String format("UTF8");  // travels by value, hence by the address of a copy
  callSlot<void>(host.object, 3, &kRatio, &stored);
  Ombe::StreamInterface* stream = engine.play(kFile);
  EXPECT_EQ(
      all({host.ask<bool>(2, &kRatio, &read), host.ask<UID>(4), host.ask<String>(6),
           host.ask<Status>(24, stream->streamUID(), 1), host.ask<Status>(23, stream->streamUID()),
           host.ask<Status>(22, engine.host.withdrawn.back().release()),
           Table{&engine.context}.ask<bool>(8, &format), Table{&engine.clock}.ask<int>(2),
           controller.ask<bool>(2, &kRatio, &read), controller.ask<bool>(13, nullptr),
           controller.ask<bool>(14, nullptr)}),
      "1 3 'de' fail fail fail 1 -5 1 0 0 ");
  EXPECT_EQ(callSlot<double>(host.object, 8), 2.5);
}

}  // namespace
}  // namespace ombe_test
