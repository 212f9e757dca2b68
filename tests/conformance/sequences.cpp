// What the built plug-in calls on its host and controller, and in which order.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <thread>

#include "support/fakes.h"
#include "support/paths.h"

namespace ombe_test {
namespace {

/// An engine that is not attached yet; `after` gives an operation's answer and the calls it made.
struct Watched : Engine {
  Watched() : Engine(false) { host.logsQueries = true; }

  std::string after(std::string answer) {
    for (const std::string& call : host.calls.take()) answer += ", " + call;
    return answer;
  }
  std::string after(Ombe::Status answer) {
    return after(answer == Ombe::kGeneralFailure ? "fail" : std::to_string(answer));
  }

  const TempFile file{"{1}{1}1000\n{1000}{3000}A\n"};
  const std::string opened =
      "0, setValue CodePage/Autodetected, getValue CodePage/Name, getValue CodePage/Autodetected, "
      "getValue FrameRate/Ratio, newUID";
};

TEST(Calls, AreThoseOfEachOperationInOrder) {
  Watched engine;
  const auto after = [&](auto answer) { return engine.after(answer); };
  Ombe::ContainerInterface& container = *engine.component.container;
  const auto program = [&] { return std::to_string(container.getProgramUIDs().head()->value); };
  EXPECT_EQ(after(program()), "18446744073709551615");
  EXPECT_EQ(after(container.activateProgram(Ombe::kNoUID)), "fail");
  engine.component.control->setSubtitleController(&engine.controller);
  EXPECT_EQ(after(engine.open(engine.file.uri())), "fail");
  EXPECT_EQ(after(container.activateProgram(Ombe::kNoUID)), "fail, register");
  EXPECT_EQ(after(container.deactivate(false)), "0, unregister");

  container.attach(&engine.host, 77);
  EXPECT_EQ(after(program()), "1, newUID");
  EXPECT_EQ(after(program()), "1");
  EXPECT_EQ(after(container.activateProgram(1)), "0, register, preferredLanguage");
  EXPECT_EQ(after(engine.probe(engine.file.uri()) ? "yes" : "no"),
            "yes, setValue CodePage/Autodetected, getValue CodePage/Name");
  EXPECT_EQ(after(engine.open("http://host/a.sub")), "fail");
  EXPECT_EQ(after(engine.open("file:///no/such.sub")),
            "fail, getValue CodePage/Name, getValue CodePage/Autodetected");
  engine.host.nextUID = 9;
  EXPECT_EQ(after(engine.open(engine.file.uri())), engine.opened);
  const TempFile wide(std::string("\xFF\xFE{\0001\0}\0{\0002\0}\0x\0", 16));
  engine.host.nextUID = 5;
  EXPECT_EQ(after(engine.open(wide.uri())),
            "0, setValue CodePage/Autodetected, setValue CodePage/Name, getValue CodePage/Name, "
            "getValue CodePage/Autodetected, getValue CodePage/Name, getValue FrameRate/Ratio, "
            "newUID");
  EXPECT_EQ(after(container.activateProgram(2)), "fail, register");
  EXPECT_EQ(after(container.activateProgram(1)),
            "0, register, preferredLanguage, announce 5, announce 9, select 5 1");

  Ombe::StreamInterface& stream = *engine.newestStream();
  EXPECT_EQ(after(stream.setTimeSource(&engine.clock)), "0");
  EXPECT_EQ(after(readOne(stream)), "wait, getTimeOffset");
  engine.clock.now = 500;
  EXPECT_EQ(after(readOne(stream)),
            "1000+2000 A, getTimeOffset, controller getValue CodePage/Autodetected");
  engine.controller.changeRatio(25, 1);
  engine.controller.changeCodePage("UTF8");
  EXPECT_EQ(after(stream.seekStream(0, nullptr, true)), "0");
  EXPECT_EQ(after(stream.setReadSpeed(-1)), "1");
  // Hangs when the container waits for the controller with its lock held.
  engine.host.callBack = [&](auto&) { std::thread([&] { stream.resetStream(); }).join(); };
  EXPECT_EQ(after(container.deactivate(true)), "0, unregister");
  engine.host.callBack = nullptr;
  EXPECT_EQ(after(container.deactivate(false)), "0, unregister, withdraw 5, withdraw 9");
  EXPECT_EQ(after(container.deactivate(false)), "0, unregister");
  EXPECT_EQ(after(container.activateProgram(1)), "0, register, preferredLanguage");
}

TEST(Calls, WithdrawAStreamBeforeAnotherTakesItsIdentifier) {
  Watched engine;
  engine.component.container->attach(&engine.host, 77);
  EXPECT_EQ(engine.after(engine.open(engine.file.uri())), engine.opened);
  EXPECT_EQ(engine.after(engine.activate()),
            "0, newUID, preferredLanguage, announce 1, select 1 1");
  engine.host.nextUID = 1;
  EXPECT_EQ(engine.after(engine.open(engine.file.uri())), engine.opened + ", withdraw 1");
  engine.host.callBack = [&](const std::string& call) {
    if (!call.starts_with("announce")) return;
    engine.host.callBack = nullptr;
    engine.component.container->deactivate(false);
  };
  EXPECT_EQ(engine.after(engine.activate()), "0, preferredLanguage, announce 1, withdraw 1");
}

TEST(Component, ThatIsDestroyedCallsNobody) {
  Watched engine;
  {
    const Component component(&engine.context);
    component.control->setSubtitleController(&engine.controller);
    component.container->attach(&engine.host, 1);
    const TempFile noEntries("{1}{1}25\n");
    component.container->open(Ombe::MediaSource(Ombe::toByteString(noEntries.uri())));
    component.container->activateProgram(component.container->getProgramUIDs().head()->value);
    engine.after(0);
  }
  EXPECT_EQ(engine.after(0), "0");
  engine.host.streams.clear();
  engine.controller.consumers.clear();
}

TEST(Calls, EndWhenTheHostIsTakenAway) {
  Watched engine;
  engine.component.container->attach(&engine.host, 77);
  engine.open(engine.file.uri());
  engine.activate();
  engine.clock.now = 500;
  Ombe::StreamInterface& stream = *engine.newestStream();
  stream.setTimeSource(&engine.clock);
  engine.after(0);
  engine.component.container->attach(nullptr, 0);
  EXPECT_EQ(engine.after(readOne(stream)), "1000+2000 A");
  EXPECT_EQ(engine.after(engine.open(engine.file.uri())), "fail");
  EXPECT_EQ(engine.after(engine.component.container->deactivate(false)), "0");
  EXPECT_EQ(readOne(stream), "end");
  engine.host.streams.clear();
}

struct CountingAllocator : Ombe::StandardAllocator<char> {
  char* allocate(std::uint32_t count) override {
    return ++live, StandardAllocator::allocate(count);
  }
  void deallocate(char* block) override {
    live -= block != nullptr ? 1 : 0;
    StandardAllocator::deallocate(block);
  }
  int live = 0;
};

TEST(Component, KeepsNothingOfTheHostsAllocator) {
  CountingAllocator allocator;
  Watched engine;
  engine.host.languageAllocator = &allocator;
  engine.host.language = "de-AT";
  engine.component.container->attach(&engine.host, 77);
  engine.activate();
  EXPECT_EQ(allocator.live, 0);
}

// A module stays loaded, so a copy is loaded each time.
TEST(Module, MayBeLoadedAndClosedAgainAndAgain) {
  const TempFile copy("");
  for (const char* name : {".1", ".2", ".1"}) {
    const std::string path = copy.path() + name;
    std::filesystem::copy_file(OMBE_PLUGIN, path, std::filesystem::copy_options::skip_existing);
    void* module = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(module, nullptr) << ::dlerror();
    const auto enter = reinterpret_cast<Ombe::EntryPoint>(::dlsym(module, Ombe::kEntryPointName));
    Ombe::Plugin* plugin = nullptr;
    EXPECT_EQ(enter(nullptr, &plugin), Ombe::kSuccess);
    EXPECT_EQ(plugin->release(), 0);
    EXPECT_EQ(::dlclose(module), 0);
  }
}

}  // namespace
}  // namespace ombe_test
