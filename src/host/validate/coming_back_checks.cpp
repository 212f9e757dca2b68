// Hosts that call the plug-in from within its calls to them.
#include <thread>

#include "host/session/source.h"
#include "host/validate/verdict.h"
#include "host/validate/watched_engine.h"
#include "ombe_core/logger.h"

namespace Ombe {
namespace {

/// Calls `act` once from within the next call that begins so; whether it was called shows in the
/// result.
class Within {
 public:
  template <typename Act>
  Within(CallRecord& record, std::string beginning, Act act) : record_(record) {
    record_.comingBack = [this, beginning = std::move(beginning), act](const std::string& call) {
      if (wasCalled_ || !call.starts_with(beginning)) return;
      wasCalled_ = true;
      act();
    };
  }
  Within(const Within&) = delete;
  Within& operator=(const Within&) = delete;
  ~Within() { record_.comingBack = nullptr; }
  [[nodiscard]] bool wasCalled() const { return wasCalled_; }

 private:
  CallRecord& record_;
  bool wasCalled_ = false;
};

void readsWhenAnnounced(Playing& playing) {
  const auto entries = readAll(playing.stream);
  std::vector<std::string> within;
  const Within call(playing.record, "announceStream", [&] { within = readAnew(playing.stream); });
  expectSame("activateProgram", kSuccess, playing.activate());
  expect(within == entries, "from within announceStream other entries were read");
}

void activatesWhenSelected(Playing& playing) {
  Status within = -77;
  const Within call(playing.record, "selectStream", [&] { within = playing.activate(); });
  expectSame("activateProgram", kSuccess, playing.activate());
  expectSame("activateProgram from within selectStream", kSuccess, within);
  expect(playing.record.foul().empty(), playing.record.foul());
}

void deactivatesWhenSelected(Playing& playing) {
  playing.host.keepsWithdrawn = true;
  const Within call(playing.record, "selectStream", [&] { playing.container().deactivate(false); });
  static_cast<void>(playing.activate());
  expect(playing.host.streams.empty(),
         "deactivate from within selectStream left streams announced");
  expectSame("a read after it", "end", readOne(playing.stream));
}

void deactivatesWhenWithdrawn(Playing& playing) {
  const Within call(playing.record, "withdrawStream",
                    [&] { playing.container().deactivate(false); });
  expectSame("deactivate", kSuccess, playing.container().deactivate(false));
  expect(playing.host.streams.empty(), "streams are left");
  expect(playing.record.foul().empty(), playing.record.foul());
}

void opensWhenWithdrawn(Playing& playing) {
  playing.host.keepsWithdrawn = true;
  Status within = -77;
  const Within call(playing.record, "withdrawStream", [&] {
    within = playing.open(sourceUri(playing.sample));
    static_cast<void>(playing.activate());
  });
  expectSame("deactivate", kSuccess, playing.container().deactivate(false));
  expectSame("open from within withdrawStream", kSuccess, within);
}

void seeksWhenAskedForTheOffset(Playing& playing) {
  const auto entries = readAll(playing.stream);
  playing.stream.resetStream();
  const Within call(playing.record, "getTimeOffset",
                    [&] { playing.stream.seekStream(0xFFFFFFFFU, nullptr, true); });
  const std::string one = readOne(playing.stream);
  expect(!call.wasCalled() || one == "end" || one == entries.front(),
         "a seek to the end from within getTimeOffset made the read give " + one);
}

void deactivatesWhenAskedForTheOffset(Playing& playing) {
  playing.host.keepsWithdrawn = true;
  const Within call(playing.record, "getTimeOffset",
                    [&] { playing.container().deactivate(false); });
  readOne(playing.stream);
  expect(!call.wasCalled() || readOne(playing.stream) == "end",
         "a stream released from within getTimeOffset still has entries");
}

/// On another thread, which waits for good when the container waits with its lock held.
void deregistersWithoutItsLock(Playing& playing) {
  static_cast<void>(playing.control());
  const Within call(playing.record, "unregisterConsumer",
                    [&] { std::jthread([&] { playing.stream.resetStream(); }); });
  expectSame("deactivate", kSuccess, playing.container().deactivate(true));
}

void fetchesUidsWithoutItsLock(Playing& playing) {
  const Within call(playing.record, "preferredLanguage",
                    [&] { playing.container().getProgramUIDs(); });
  expectSame("activateProgram", kSuccess, playing.activate());
}

void bearsALogThatAsks(Playing& playing) {
  std::uint32_t found = 0;
  thread_local bool isWithin = false;
  Logger::instance().setSink([&](const LogRecord& /*record*/) {
    if (std::exchange(isWithin, true)) return;
    playing.stream.getNextChunkTime(0, 0, &found);
    isWithin = false;
  });
  const auto logged = readAnew(playing.stream);
  playing.stream.seekStream(0, nullptr, true);
  Logger::instance().setSink({});
  expect(readAnew(playing.stream) == logged, "with a log that asks the stream it reads otherwise");
}

/// Does as a controller that tells another component of it at once.
void bearsSettingsThatAreTold(Playing& playing) {
  const auto entries = readAll(playing.stream);
  const Within call(playing.record, "setValue",
                    [&] { std::jthread([&] { playing.stream.readSpeed(); }); });
  expectSame("open", kSuccess, playing.open(sourceUri(playing.sample)));
  static_cast<void>(playing.activate());
  expectSame("the number of entries", entries.size(), readAnew(playing.stream).size());
}

constexpr ContractCheck kComingBackChecks[] = {
    {"coming-back.announced", kThreads, "a stream may be read from within announceStream",
     readsWhenAnnounced},
    {"coming-back.selected", kThreads, "the program may be activated from within selectStream",
     activatesWhenSelected},
    {"coming-back.selected-deactivate", kThreads,
     "the program may be deactivated from within selectStream", deactivatesWhenSelected},
    {"coming-back.withdrawn", kThreads, "deactivate may come from within withdrawStream",
     deactivatesWhenWithdrawn},
    {"coming-back.withdrawn-open", kThreads, "a source may be opened from within withdrawStream",
     opensWhenWithdrawn},
    {"coming-back.offset-seek", kThreads, "the stream may be sought from within getTimeOffset",
     seeksWhenAskedForTheOffset},
    {"coming-back.offset-deactivate", kThreads,
     "the program may be deactivated from within getTimeOffset", deactivatesWhenAskedForTheOffset},
    {"coming-back.deregistration", kThreads, "deregistering happens without the lock",
     deregistersWithoutItsLock},
    {"coming-back.language", kThreads, "the container may be asked from within preferredLanguage",
     fetchesUidsWithoutItsLock},
    {"coming-back.log", kThreads, "the log's sink may ask the stream", bearsALogThatAsks},
    {"coming-back.settings", kSettings, "a setting that is written may be told at once",
     bearsSettingsThatAreTold},
};

}  // namespace

std::span<const ContractCheck> comingBackChecks() { return kComingBackChecks; }

}  // namespace Ombe
