// What the built plug-in calls on its host and controller, and in which order.
#include <gtest/gtest.h>

#include "support/fakes.h"

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
  EXPECT_EQ(after(container.deactivate(true)), "0, unregister");
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

TEST(Calls, TakeIdentifiersAsTheyCome) {
  for (const Ombe::UID uid : {Ombe::UID{0}, Ombe::UID{2}, ~Ombe::UID{0}}) {
    Watched engine;
    engine.component.container->attach(&engine.host, uid);
    EXPECT_EQ(engine.component.container->getContainerUID(), uid);
    engine.host.nextUID = uid;
    EXPECT_EQ(engine.after(engine.open(engine.file.uri())), engine.opened);
    engine.host.nextUID = 7;
    const std::string name = std::to_string(uid);
    std::string calls = "0, newUID, preferredLanguage, announce ";
    calls.append(name).append(", select ").append(name).append(" 1");
    EXPECT_EQ(engine.after(engine.activate()), calls);
    EXPECT_EQ(engine.after(engine.component.container->deactivate(false)), "0, withdraw " + name);
  }
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

}  // namespace
}  // namespace ombe_test
