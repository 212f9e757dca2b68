// The places of operations in the engine's tables, and what the built plug-in has of its own in
// its tables. That any plug-in answers as the interfaces say is for `ombe validate` to ask.
#include "support/slots.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <numeric>

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

/// Joined, in the order in which they were asked.
std::string all(std::initializer_list<std::string> answers) {
  std::string text;
  for (const std::string& answer : answers) text += answer;
  return text;
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

TEST(Container, ConvertsTextAndTakesAControllerBehindItsInterface) {
  Engine engine;
  void* const c = engine.component.container;
  callSlot<void>(c, 22, nullptr);  // keeps the controller that is there
  EXPECT_EQ(engine.activate(), kSuccess);
  ByteString out = toByteString("kept");
  EXPECT_EQ(all({answer<ByteString>(c, 12, UID{5}), answer<bool>(c, 21, -1),
                 answer<bool>(c, 24, "\xB3\xB9", 2U, &out), std::string(view(out))}),
            "'' 0 0 kept");
  engine.controller.changeCodePage("windows-1250");
  EXPECT_EQ(all({answer<bool>(c, 24, "\xB3\xB9", 2U, &out), std::string(view(out))}),
            "1 \u0142\u0105");
}

TEST(Stream, SaysWhatItIs) {
  Engine engine;
  engine.clock.now = 100000;
  StreamInterface& stream = *engine.play(kFile);
  ByteString name;
  String language("kept"), region("kept");
  EXPECT_FALSE(stream.getStreamInfo(nullptr, &language, &region));
  EXPECT_TRUE(stream.getStreamInfo(&name, &language, &region));
  EXPECT_TRUE(view(name) == "movie.sub" && language == "kept" && region == "kept");
  const auto* frame = stream.getImageProperties();
  EXPECT_TRUE(frame->frameWidth() == 640 && frame->frameHeight() == 480);
  EXPECT_EQ(std::memcmp(stream.getFormat(), &kText, 20), 0);
  EXPECT_EQ(stream.getPrimaryTrack(), &stream);
  EXPECT_FALSE(stream.reservedSlot24(1));
  MediaChunk* chunk = nullptr;
  stream.readStream(&chunk);
  IBufferAllocator& allocator = chunk->allocator();
  EXPECT_EQ(*(reinterpret_cast<const std::uint32_t*>(&allocator) + sizeof(void*) / 4), 8U);
  EXPECT_EQ(allocator.allocate(16, 1, 1), nullptr);
  allocator.deleteChunk(chunk);
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

/// The numbers from 2 on.
std::vector<std::size_t> slotsUpTo(std::size_t last) {
  std::vector<std::size_t> slots(last - 1);
  std::iota(slots.begin(), slots.end(), 2);
  return slots;
}

TEST(Engine, HasItsOperationsInTheirPublishedSlots) {
  using P = Plugin;
  EXPECT_EQ(slotsOf(&P::retain, &P::release, &P::holdCount, &P::getPluginInfo, &P::getPluginContext,
                    &P::getInterface),
            slotsUpTo(7));
  using C = ContainerInterface;
  EXPECT_EQ(slotsOf(&C::attach, &C::probe, &C::reservedSlot4, &C::open, &C::reservedSlot6,
                    &C::getSourcePath, &C::getContainerUID, &C::reservedSlot9, &C::close,
                    &C::getProgramUIDs, &C::getProgramName, &C::activateProgram, &C::deactivate,
                    &C::getFileSize, &C::findMediaTypeRank, &C::mediaTypeCount, &C::mediaTypeAt,
                    &C::mediaTypeRankAt),
            slotsUpTo(19));
  using S = StreamInterface;
  EXPECT_EQ(
      slotsOf(&S::reservedSlot2, &S::framerate, &S::getStreamInfo, &S::getFormat,
              &S::getImageProperties, &S::reservedSlot7, &S::getPrimaryTrack,
              &S::getAuxiliaryTracks, &S::setTimeSource, &S::resetStream, &S::getNextChunkTime,
              &S::seekStream, &S::reservedSlot14, &S::readStream, &S::getLastChunkTime, &S::isEOS,
              &S::setReadSpeed, &S::readSpeed, &S::setReadMode, &S::readMode, &S::setReadInterval,
              &S::getReadInterval, &S::reservedSlot24),
      slotsUpTo(24));
  using A = IBufferAllocator;
  EXPECT_EQ(slotsOf(&A::reservedSlot2, &A::reservedSlot3, &A::allocate, &A::deleteChunk),
            slotsUpTo(5));
  using Host = ContainerHost;
  using Controller = SubtitleController;
  const std::vector<std::size_t> called = {2, 3, 4, 6, 8, 22, 23, 24, 2, 13, 14, 8, 2, 2, 2};
  EXPECT_EQ(slotsOf(&Host::getValue, &Host::setValue, &Host::newUID, &Host::preferredLanguage,
                    &Host::getTimeOffset, &Host::announceStream, &Host::withdrawStream,
                    &Host::selectStream, &Controller::getValue, &Controller::registerConsumer,
                    &Controller::unregisterConsumer, &PluginContext::supportsFormat,
                    &TimeSource::currentTime, &SettingConsumer::settingChanged,
                    &SubtitleControlInterface::setSubtitleController),
            called);
}

}  // namespace
}  // namespace ombe_test
