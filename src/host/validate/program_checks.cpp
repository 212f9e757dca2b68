// A container with a source of its own: what it says of it, and what becomes of its streams.
#include <algorithm>
#include <filesystem>
#include <system_error>

#include "host/session/source.h"
#include "host/validate/verdict.h"
#include "host/validate/watched_engine.h"

namespace Ombe {
namespace {

std::ptrdiff_t countOf(const std::vector<std::string>& calls, std::string_view beginning) {
  return std::count_if(calls.begin(), calls.end(),
                       [&](const std::string& call) { return call.starts_with(beginning); });
}

void opens(const Subject& subject) {
  requireSamples(subject);
  for (const std::string& sample : subject.samples) {
    WatchedEngine engine(subject);
    setPlace(std::filesystem::path(sample).filename().string() + ": ");
    expect(readOne(engine.play(sample)) != "end", "it has no entry");
  }
}

void namesItsPath(Playing& playing) {
  expectSame("getSourcePath", playing.sample, view(playing.container().getSourcePath()));
}

void keepsItsPath(Playing& playing) {
  expectSame("open of a missing file", kGeneralFailure, playing.open("file:///no/such.sub"));
  expectSame("getSourcePath after an open that failed", playing.sample,
             view(playing.container().getSourcePath()));
}

void knowsItsSize(Playing& playing) {
  std::error_code error;
  const std::uint64_t expected = std::filesystem::file_size(playing.sample, error);
  std::uint64_t size = ~expected;
  expectSame("getFileSize", kSuccess, playing.container().getFileSize(&size));
  expectSame("its output", UID{expected}, UID{size});
  expectSame("getFileSize without an output", kGeneralFailure,
             playing.container().getFileSize(nullptr));
}

void asksForItsFormat(Playing& playing) {
  FormatRequirementList missing(1, FormatRequirement{"other", {1, 2, 3}});
  const std::string uri = sourceUri(playing.sample);
  expectSame("probe by an engine that shows its format", true, playing.probe(uri, &missing));
  expectSame("the list's length then", 1U, static_cast<unsigned>(missing.size()));
  playing.context.showsFormats = false;
  expectSame("probe by an engine that shows no format", false, playing.probe(uri, &missing));
  expectSame("the list's length then", 2U, static_cast<unsigned>(missing.size()));
  expectSame("what stood in the list", "other", std::string_view(missing[0].name));
  expect(missing[1].name[0] != 0, "the format that is missing has no name");
  expectSame("probe without a list", false, playing.probe(uri));
}

/// Announced and selected only when the program is activated.
void announcesOnActivation(Playing& playing) {
  playing.record.take();
  const std::size_t before = playing.host.streams.size();
  expectSame("open once more", kSuccess, playing.open(sourceUri(playing.sample)));
  expect(countOf(playing.record.take(), "announceStream") == 0, "open announced a stream");
  expectSame("activateProgram", kSuccess, playing.activate());
  expectSame("streams of two sources", static_cast<unsigned>(2 * before),
             static_cast<unsigned>(playing.host.streams.size()));
}

void selectsOne(Playing& playing) {
  const auto calls = playing.record.take();
  expectSame("calls of selectStream in an activation", 1LL, countOf(calls, "selectStream") + 0LL);
  const auto isSelection = [](const std::string& call) { return call.starts_with("selectStream"); };
  expect(countOf({std::ranges::find_if(calls, isSelection), calls.end()}, "announceStream") == 0,
         "a stream was announced after one had been selected");
}

void announcesTheSameAgain(Playing& playing) {
  std::vector<const StreamInterface*> before, after;
  for (const auto& [uid, stream] : playing.host.streams) before.push_back(stream.get());
  expectSame("activateProgram once more", kSuccess, playing.activate());
  for (const auto& [uid, stream] : playing.host.streams) after.push_back(stream.get());
  expect(before == after, "another activation announced other streams");
  expect(playing.record.foul().empty(), playing.record.foul());
}

void keepsStreamsWhenTold(Playing& playing) {
  const std::string first = readOne(playing.stream);
  playing.record.take();
  expectSame("deactivate that keeps the streams", kSuccess, playing.container().deactivate(true));
  expect(countOf(playing.record.take(), "withdrawStream") == 0,
         "deactivate withdrew what it was told to keep");
  expectSame("resetStream", kSuccess, playing.stream.resetStream());
  expectSame("a read from the beginning", first, readOne(playing.stream));
}

void withdrawsOnce(Playing& playing) {
  const auto streams = static_cast<long long>(playing.host.streams.size());
  playing.record.take();
  expectSame("deactivate", kSuccess, playing.container().deactivate(false));
  expectSame("calls of withdrawStream", streams,
             countOf(playing.record.take(), "withdrawStream") + 0LL);
  expectSame("deactivate once more", kSuccess, playing.container().deactivate(false));
  expect(countOf(playing.record.take(), "withdrawStream") == 0, "streams were withdrawn twice");
  expect(playing.record.foul().empty(), playing.record.foul());
}

/// One that the container had destroyed would not answer.
void leavesStreamsToTheHost(Playing& playing) {
  playing.host.keepsWithdrawn = true;
  const UID uid = playing.stream.streamUID();
  playing.container().deactivate(false);
  expectSame("streamUID of a withdrawn stream", uid, playing.stream.streamUID());
  expectSame("containerUID of it", WatchedEngine::kContainerUID, playing.stream.containerUID());
  expectSame("readSpeed of it", 1000, playing.stream.readSpeed());
  expectSame("a read of it", "end", readOne(playing.stream));
}

void opensAgain(Playing& playing) {
  const std::vector<std::string> before = readAll(playing.stream);
  for (int round = 0; round < 3; ++round) {
    expectSame("deactivate", kSuccess, playing.container().deactivate(false));
    expect(readAll(playing.play(playing.sample)) == before, "opened again, it reads otherwise");
  }
}

void callsRightly(Playing& playing) {
  readAll(playing.stream);
  playing.stream.seekStream(0, nullptr, true);
  playing.container().deactivate(false);
  expect(playing.record.foul().empty(), "it made this call: " + playing.record.foul());
}

void throwsNothing(const Subject& subject) {
  WatchedEngine engine(subject);
  try {
    for (const char* uri :
         {"", "file:///no/such.sub", "http://host/a", "file:///%", "%00", "\xFF"}) {
      engine.probe(uri);
      engine.open(uri);
    }
    engine.container().activateProgram(12345);
    engine.container().deactivate(false);
  } catch (const std::bad_alloc&) {  // may always be
  } catch (const std::exception& error) {
    report(Outcome::kFailed, std::string("an exception left an operation: ") + error.what());
  }
}

constexpr ContractCheck kProgramChecks[] = {
    {"container.throws-nothing", kThreads, "nothing but std::bad_alloc leaves an operation",
     throwsNothing},
    {"container.opens", kTables,
     "a sample is recognised, opened and activated, and its stream takes a clock", opens},
    {"container.source-path", kTables, "getSourcePath gives the path of the source opened last",
     namesItsPath},
    {"container.source-path-failure", kTables, "an open that fails leaves getSourcePath alone",
     keepsItsPath},
    {"container.file-size", kTables, "getFileSize gives the source's bytes", knowsItsSize},
    {"container.missing-format", kTables,
     "probe appends the one format that the engine does not show, and is then false",
     asksForItsFormat},
    {"container.announces", kOwnership, "streams are announced when the program is activated",
     announcesOnActivation},
    {"container.selects", kTables, "an activation selects one stream, after announcing all",
     selectsOne},
    {"container.announces-again", kOwnership, "another activation announces the same streams",
     announcesTheSameAgain},
    {"container.keeps-streams", kTables, "deactivate with keepStreams withdraws nothing",
     keepsStreamsWhenTold},
    {"container.withdraws", kTables, "deactivate withdraws every announced stream once",
     withdrawsOnce},
    {"container.streams-are-the-hosts", kOwnership,
     "an announced stream is the host's: it is there until the host destroys it, and reads its end",
     leavesStreamsToTheHost},
    {"container.opens-again", kTables, "after deactivate the source can be opened again",
     opensAgain},
    {"container.calls-rightly", kTables,
     "the host is called through the published slots, with its own UIDs and streams", callsRightly},
};

}  // namespace

std::span<const ContractCheck> programChecks() { return kProgramChecks; }

}  // namespace Ombe
