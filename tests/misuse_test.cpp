// Hosts that keep no rule: whatever one does, whatever it does next, and from within whatever call,
// the built plug-in answers, leaves its lock free and plays on.
#include <gtest/gtest.h>

#include <set>
#include <thread>

#include "support/fakes.h"
#include "support/slots.h"

namespace ombe_test {
namespace {

using Ombe::SettingValue;

/// What is done, with a number.
const char* const kAbuses[] = {
    // Those of a stream.
    "clock=-2147483648", "clock=-1", "clock=0", "clock=2147483148", "clock=2147483647",
    "speed=-2147483648", "speed=-1", "speed=0", "speed=1", "speed=2147483647", "seek=0",
    "seek=3001", "seek=4294967295", "offset=nan", "offset=inf", "offset=-inf", "offset=1e300",
    "offset=-1e300", "offset=4e9", "offset=-4e9", "source=0", "source=1",
    // Notifications.
    "tell=0", "tell=1", "tell=2", "tell=3", "tell=4", "tell=5", "tell=6", "tell=7", "tell null",
    "to and fro", "query",
    // The container.
    "keep", "drop", "activate", "activate=12345", "reopen", "probe", "fail to open", "uid=0",
    "uid=2", "uid=-1"};

/// What the plug-in calls, by the beginnings of the calls.
const char* const kCalls[] = {
    "getValue",   "setValue", "newUID", "preferredLanguage", "getTimeOffset",       "announce",
    "withdraw",   "select",   "clock",  "register",          "controller getValue", "log",
    "unregister", "context"};

/// From within these a host may not release streams: some are not announced yet, or one is read.
const std::set<std::string> kHoldsStreams = {"register", "preferredLanguage", "announce",
                                             "controller getValue"};

/// An engine with or without a host and a controller. Streams outlive their withdrawal.
struct Victim : Engine {
  Victim(const std::string& fileUri, bool hasHost, bool hasController)
      : Engine(false), uri(fileUri) {
    host.keepsWithdrawn = true;
    host.settings.setString("CodePage", "Name", "CP1252");
    clock.callBack = [&] { host.told("clock", false); };
    context.callBack = [&] { host.told("context", false); };
    if (hasHost) container.attach(&host, 77);
    if (hasController) component.control->setSubtitleController(&controller);
    reopen();
  }
  void reopen() {
    container.getProgramUIDs();
    open(uri);
    activate();
    if (newestStream() != nullptr) stream = newestStream();
  }
  /// Of every setting there is, and some more.
  void tell(const SettingValue* value) {
    for (const char* group : {"FrameRate", "CodePage", ""}) {
      for (const char* key : {"Ratio", "Name", "Autodetected", ""}) {
        const Ombe::Setting setting(Ombe::MediaType::kSubtitle, group, key);
        callSlot<void>(&container, 23, &setting, value);
      }
    }
  }
  void commit(const std::string& abuse);
  void abuseStream(const std::string& name, double number);

  const std::string uri;
  Ombe::ContainerInterface& container = *component.container;
  Ombe::StreamInterface* stream = nullptr;
};

void Victim::abuseStream(const std::string& name, double number) {
  if (name == "clock") clock.now = static_cast<std::int32_t>(number);
  if (name == "offset") host.offset = number;
  std::uint32_t time = 0;
  if (name == "speed") stream->setReadSpeed(static_cast<std::int32_t>(number));
  if (name == "query") stream->getStreamInfo(nullptr, nullptr, nullptr);
  if (name == "source") stream->setTimeSource(number == 0 ? nullptr : &clock);
  if (name == "seek") {
    stream->getNextChunkTime(0, static_cast<std::uint32_t>(number), &time);
    stream->seekStream(static_cast<std::uint32_t>(number), nullptr, true);
  }
  readOne(*stream);
}

void Victim::commit(const std::string& abuse) {
  const std::string name = abuse.substr(0, abuse.find('='));
  const bool isPlain = name == abuse;
  const double number = isPlain ? 0 : std::stod(abuse.substr(name.size() + 1));
  static Ombe::String none, unknown("no such page");
  using V = SettingValue;
  const auto ratio = [](std::uint32_t a, std::uint32_t b) { return V::ratio({a, b}); };
  static const V values[] = {V(), ratio(0, 0), ratio(1, ~0U), ratio(~0U, 1), V::boolean(true),
                             V::string(nullptr),
                             // Names, and the ratios to and fro.
                             V::string(&none), V::string(&unknown), ratio(24, 1), ratio(25, 1)};
  if (name == "tell") tell(&values[static_cast<std::size_t>(number)]);
  if (name == "tell null") tell(nullptr);
  for (int i = 0; name == "to and fro" && i < 1000; ++i) tell(&values[8 + i % 2]);
  if (name == "keep" || name == "drop") container.deactivate(name == "keep");
  if (name == "activate" && isPlain) activate();
  if (name == "activate" && !isPlain) container.activateProgram(12345);
  if (name == "uid") host.nextUID = static_cast<Ombe::UID>(static_cast<long long>(number));
  if (name == "reopen" || name == "uid") reopen();
  if (name == "probe") probe(uri);
  if (name == "fail to open") open(uri + "/none.sub");
  if (stream != nullptr) abuseStream(name, number);
}

void expectToPlayOn(Victim& v) {
  // A lock left behind stops this for good.
  std::thread([&] { v.tell(nullptr); }).join();
  v.host.callBack = nullptr;
  v.clock.now = 2147483647;
  v.host.offset = 0;
  if (v.stream != nullptr) {
    v.stream->setTimeSource(&v.clock);
    v.stream->setReadSpeed(1000);
    v.stream->resetStream();
    for (const char* text : {" AA", " BB", "end"}) {
      EXPECT_TRUE(readOne(*v.stream).ends_with(v.newestStream() == nullptr ? "end" : text));
    }
  }
  v.container.deactivate(false);
  v.host.nextUID = 1000;
  v.container.attach(&v.host, 77);
  v.reopen();
  v.stream->setTimeSource(&v.clock);
  EXPECT_EQ(readAll(*v.stream), "1000+2000 AA ; 5000+1000 BB");
}

TEST(Misuse, InAnyOrderIsAnsweredAndForgiven) {
  const TempFile file("{1}{1}1000\n{1000}{3000}AA\n{5000}{6000}BB\n");
  for (const bool hasHost : {true, false}) {
    for (const std::string first : kAbuses) {
      for (const std::string second : kAbuses) {
        SCOPED_TRACE(testing::Message() << first << ", " << second << ", host: " << hasHost);
        Victim victim(file.uri(), hasHost, first != second);
        for (const std::string& abuse : {first, second, first}) victim.commit(abuse);
        expectToPlayOn(victim);
        ASSERT_FALSE(testing::Test::HasFailure());
      }
    }
  }
}

/// Every call that the plug-in makes, some of them for several reasons.
TEST(Misuse, FromWithinAnyCallIsAnsweredAndForgiven) {
  const TempFile file("{1}{1}1000\n{1000}{3000}AA\n{5000}{6000}BB\n");
  for (const std::string within : kCalls) {
    bool isCalled = false;
    for (const std::string abuse : kAbuses) {
      // No host gives an identifier twice.
      if (abuse.starts_with("uid") || (abuse == "drop" && kHoldsStreams.contains(within))) continue;
      for (int nth = 1; nth <= 3; ++nth) {
        SCOPED_TRACE(testing::Message() << abuse << " within " << within << " " << nth);
        Victim victim(file.uri(), true, true);
        Ombe::Logger::instance().setSink([&](const Ombe::LogRecord& record) {
          victim.host.told(std::string("log ") + record.function, false);
        });
        victim.stream->setTimeSource(&victim.clock);
        for (const char* act : {"clock=9999", "seek=0", "probe", "fail to open", "reopen", "source",
                                "speed=-1", "speed=1", "keep", "activate", "drop", "reopen"}) {
          int left = nth;
          victim.host.callBack = [&](const std::string& call) {
            if (!call.starts_with(within) || --left != 0) return;
            isCalled = true;
            victim.host.callBack = nullptr;
            victim.commit(abuse);
          };
          victim.commit(act);
          victim.host.callBack = nullptr;
        }
        expectToPlayOn(victim);
        Ombe::Logger::instance().setSink({});
        ASSERT_FALSE(testing::Test::HasFailure());
      }
    }
    EXPECT_TRUE(isCalled) << within;
  }
}

}  // namespace
}  // namespace ombe_test
