// How a stream is read: clock, end, seeking, speed.
#include <algorithm>
#include <limits>

#include "host/validate/verdict.h"
#include "host/validate/watched_engine.h"

namespace Ombe {
namespace {

std::uint32_t startOf(const std::string& entry) {
  return static_cast<std::uint32_t>(std::stoull(entry));
}

std::uint32_t endOf(const std::string& entry) {
  return startOf(entry) + static_cast<std::uint32_t>(std::stoull(entry.substr(entry.find('+'))));
}

using Entries = std::vector<std::string>;

/// Asks with what the stream reads, and at its beginning again. There always is an entry: a file
/// without any is no use as a sample.
template <void (*kAsk)(Playing&, const Entries&)>
void knowing(Playing& playing) {
  const Entries entries = readAll(playing.stream);
  expect(!entries.empty(), "the sample has no entries");
  playing.stream.resetStream();
  kAsk(playing, entries);
}

void readsInOrder(Playing& /*playing*/, const Entries& entries) {
  for (std::size_t i = 1; i < entries.size(); ++i) {
    expect(startOf(entries[i - 1]) <= startOf(entries[i]),
           "after " + valueText(entries[i - 1]) + " came " + valueText(entries[i]));
  }
}

void staysAtItsEnd(Playing& playing) {
  readAll(playing.stream);
  for (int round = 0; round < 3; ++round) {
    expectSame("a read past the end", "end", readOne(playing.stream));
  }
}

void startsAgain(Playing& playing, const Entries& entries) {
  expect(readAll(playing.stream) == entries, "after resetStream other entries were read");
}

void needsAnOutput(Playing& playing, const Entries& entries) {
  StreamInterface& stream = playing.stream;
  expectSame("readStream without an output", kGeneralFailure, stream.readStream(nullptr));
  expectSame("getNextChunkTime without an output", kGeneralFailure,
             stream.getNextChunkTime(0, 0, nullptr));
  expectSame("a read after them", entries[0], readOne(stream));
}

void refusesNoClock(Playing& playing, const Entries& entries) {
  StreamInterface& stream = playing.stream;
  expectSame("setTimeSource of null", kNothingDue, stream.setTimeSource(nullptr));
  expectSame("a read by the previous clock", entries[0], readOne(stream));
}

void waitsForTheClock(Playing& playing, const Entries& entries) {
  playing.clock.set(-1);
  expectSame("a read while the clock is at -1", "wait", readOne(playing.stream));
  playing.clock.set(std::numeric_limits<std::int32_t>::min());
  expectSame("a read while the clock is at its least", "wait", readOne(playing.stream));
  playing.clock.set(PlaybackClock::kEnd);
  expectSame("a read when it has come", entries[0], readOne(playing.stream));
}

void deliversBeforeItsTime(Playing& playing, const Entries& entries) {
  for (const std::string& entry : entries) {
    const std::uint32_t start = startOf(entry);
    if (start > std::uint32_t{PlaybackClock::kEnd}) break;
    playing.clock.set(static_cast<std::int32_t>(start));
    expectSame("a read with the clock at the entry's start", entry, readOne(playing.stream));
  }
}

void readsAtTheClocksEnd(Playing& playing, const Entries& entries) {
  playing.clock.set(std::numeric_limits<std::int32_t>::max());
  expect(readAll(playing.stream) == entries, "with the clock at its greatest it reads otherwise");
}

void seeksToEach(Playing& playing, const Entries& entries) {
  StreamInterface& stream = playing.stream;
  for (const std::string& entry : entries) {
    const std::uint32_t time = startOf(entry);
    const auto isShown = [&](const std::string& one) { return endOf(one) >= time; };
    const auto shown = std::ranges::find_if(entries, isShown);
    if (shown == entries.end()) continue;  // none ends then or later
    std::uint32_t found = ~time;
    expectSame("seekStream to " + valueText(time), kSuccess, stream.seekStream(time, &found, true));
    expectSame("its output", startOf(*shown), found);
    expectSame("a read after it", *shown, readOne(stream));
    expectSame("seekStream without an output", kSuccess, stream.seekStream(time, nullptr, false));
    expectSame("a read after it", *shown, readOne(stream));
  }
}

void seeksPastTheEnd(Playing& playing, const Entries& entries) {
  StreamInterface& stream = playing.stream;
  std::uint32_t next = 0;
  expectSame("getNextChunkTime past the last", kSuccess,
             stream.getNextChunkTime(0, 0xFFFFFFFFU, &next));
  expectSame("its output, the end of the last entry", endOf(entries.back()), next);
  expectSame("seekStream past the last", kSuccess, stream.seekStream(0xFFFFFFFFU, nullptr, true));
  expectSame("a read after it", "end", readOne(stream));
}

void looksAheadWithoutMoving(Playing& playing, const Entries& entries) {
  StreamInterface& stream = playing.stream;
  for (const std::string& entry : entries) {
    std::uint32_t next = 0;
    expectSame("getNextChunkTime of " + valueText(startOf(entry)), kSuccess,
               stream.getNextChunkTime(0, startOf(entry), &next));
    expectSame("its output", startOf(entry), next);
  }
  expectSame("a read after all that", entries[0], readOne(stream));
}

void knowsWhatItDelivered(Playing& playing, const Entries& entries) {
  for (const std::string& entry : entries) {
    expectSame("a read", entry, readOne(playing.stream));
    expectSame("getLastChunkTime after " + valueText(entry), endOf(entry),
               playing.stream.getLastChunkTime());
  }
}

void pauses(Playing& playing, const Entries& entries) {
  StreamInterface& stream = playing.stream;
  std::uint32_t out = 77;
  stream.setReadSpeed(0);
  expectSame("a read on a pause", "end", readOne(stream));
  expectSame("seekStream on a pause", kGeneralFailure, stream.seekStream(0, &out, true));
  expectSame("its output", 77U, out);
  expectSame("getNextChunkTime on a pause", kGeneralFailure, stream.getNextChunkTime(0, 0, &out));
  expectSame("its output", 77U, out);
  stream.setReadSpeed(1000);
  stream.resetStream();
  expectSame("a read after the pause", entries[0], readOne(stream));
}

void readsBackward(Playing& playing, const Entries& entries) {
  StreamInterface& stream = playing.stream;
  stream.setReadSpeed(-1000);
  expectSame("resetStream", kSuccess, stream.resetStream());
  auto backward = readAll(stream);
  for (std::size_t i = 1; i < backward.size(); ++i) {
    expect(startOf(backward[i - 1]) >= startOf(backward[i]),
           "backward, after " + valueText(backward[i - 1]) + " came " + valueText(backward[i]));
  }
  Entries forward = entries;
  std::sort(forward.begin(), forward.end());
  std::sort(backward.begin(), backward.end());
  expect(forward == backward, "backward, other entries were read");
}

void addsTheOffset(Playing& playing, const Entries& entries) {
  playing.host.offset = 1500;
  const std::string shifted = readOne(playing.stream);
  expectSame("the start of an entry with an offset of 1500 ms", startOf(entries[0]) + 1500,
             startOf(shifted));
  expectSame("the rest of it", entries[0].substr(entries[0].find('+')),
             shifted.substr(shifted.find('+')));
}

constexpr ContractCheck kReadingChecks[] = {
    {"stream.order", kTables, "entries are delivered by their start", knowing<readsInOrder>},
    {"stream.end", kTables, "past the end a read gives 0 and a null pointer, again and again",
     staysAtItsEnd},
    {"stream.reset", kTables, "resetStream goes back to the first entry", knowing<startsAgain>},
    {"stream.no-output", kStatusCodes,
     "readStream and getNextChunkTime without an output give 0x80100001 and move nothing",
     knowing<needsAnOutput>},
    {"stream.no-clock", kStatusCodes,
     "setTimeSource of null gives -1 and keeps the clock there was", knowing<refusesNoClock>},
    {"stream.negative-clock", kStatusCodes,
     "while the clock's time is negative a read gives -1 and a null pointer",
     knowing<waitsForTheClock>},
    {"stream.due", kStatusCodes, "an entry whose time has come is delivered",
     knowing<deliversBeforeItsTime>},
    {"stream.greatest-clock", kStatusCodes, "with the clock at its greatest everything is due",
     knowing<readsAtTheClocksEnd>},
    {"stream.seek", kTables,
     "seekStream moves to the first entry that is shown at that time or comes later, and says so",
     knowing<seeksToEach>},
    {"stream.seek-end", kTables,
     "past the last entry getNextChunkTime gives its end, and seekStream moves to the end",
     knowing<seeksPastTheEnd>},
    {"stream.next-chunk-time", kTables,
     "getNextChunkTime gives the next entry's start and moves nothing",
     knowing<looksAheadWithoutMoving>},
    {"stream.last-chunk-time", kTables,
     "getLastChunkTime gives the end of the chunk delivered last", knowing<knowsWhatItDelivered>},
    {"stream.pause", kTables,
     "on a pause reads give no chunk, seeks 0x80100001, and outputs are left alone",
     knowing<pauses>},
    {"stream.backward", kTables, "backward the same entries are read from the last one",
     knowing<readsBackward>},
    {"stream.offset", kTables, "the host's offset is added to the times", knowing<addsTheOffset>},
};

}  // namespace

std::span<const ContractCheck> readingChecks() { return kReadingChecks; }

}  // namespace Ombe
