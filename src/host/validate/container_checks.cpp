// A container without a source, and with those that are none of its own.
#include <algorithm>
#include <cstring>

#include "host/session/source.h"
#include "host/validate/verdict.h"
#include "host/validate/watched_engine.h"

namespace Ombe {
namespace {

using Attach = WatchedEngine::Attach;

/// What no container opens.
std::vector<std::string> noSources() {
  return {"",
          "http://host/a.sub",
          "no uri",
          "file://",
          "file:///no/such/folder/a.sub",
          "file:///dev",
          std::string(70000, 'x')};
}

void knowsNothingBeforeAttach(const Subject& subject) {
  WatchedEngine engine(subject, Attach::kLater);
  ContainerInterface& container = engine.container();
  expectSame("getContainerUID", UID{0}, container.getContainerUID());
  expectSame("getSourcePath", "", view(container.getSourcePath()));
  const UIDList programs = container.getProgramUIDs();
  for (const auto* program = programs.head(); program != nullptr; program = program->next) {
    expectSame("getProgramUIDs", kNoUID, program->value);
  }
  expectSame("open", kGeneralFailure, engine.open("file:///no/such.sub"));
  engine.isLetGo = true;
}

void keepsItsUid(WatchedEngine& engine) {
  expectSame("getContainerUID", WatchedEngine::kContainerUID, engine.container().getContainerUID());
}

void opensNothing(WatchedEngine& engine) {
  for (const std::string& uri : noSources()) {
    expectSame("open of " + valueText(uri.substr(0, 60)), kGeneralFailure, engine.open(uri));
  }
  static_cast<void>(engine.activate());
  expect(engine.host.streams.empty(), "a stream was announced after opens that failed");
}

void recognisesNothing(WatchedEngine& engine) {
  for (const std::string& uri : noSources()) {
    FormatRequirementList missing;
    expectSame("probe of " + valueText(uri.substr(0, 60)), false, engine.probe(uri, &missing));
    expect(missing.empty(), "a format was added to the list for a source that is not recognised");
    expectSame("probe without a list", false, engine.probe(uri));
  }
}

void refusesItself(const Subject& subject) {
  WatchedEngine engine(subject);
  const std::string uri = sourceUri(subject.plugin);
  expectSame("probe of the plug-in's own binary", false, engine.probe(uri));
  expectSame("open of it", kGeneralFailure, engine.open(uri));
}

void keepsSizeOnFailure(WatchedEngine& engine) {
  std::uint64_t size = 77;
  expectSame("getFileSize before a source is open", kGeneralFailure,
             engine.container().getFileSize(&size));
  expectSame("its output", 77U, static_cast<unsigned>(size));
  expectSame("getFileSize without an output", kGeneralFailure,
             engine.container().getFileSize(nullptr));
}

void answersInOrder(WatchedEngine& engine) {
  ContainerInterface& container = engine.container();
  std::int32_t a = 7, b = 7;
  expectSame("slot 9", kSuccess, container.reservedSlot9(&a, &b));
  expectSame("slot 9, first output", 0, a);
  expectSame("slot 9, second output", 0, b);
  expectSame("slot 10, close", kSuccess, container.close());
  expectSame("slot 8, getContainerUID", WatchedEngine::kContainerUID, container.getContainerUID());
  container.reservedSlot4(5);
  expectSame("slot 6", kGeneralFailure, container.reservedSlot6(5));
  expect(container.mediaTypeCount() < 1000,
         "slot 17, mediaTypeCount, gave " + valueText(container.mediaTypeCount()));
  expectSame("slot 14, deactivate", kSuccess, container.deactivate(true));
}

void listsMediaTypes(WatchedEngine& engine) {
  ContainerInterface& container = engine.container();
  const std::uint32_t count = container.mediaTypeCount();
  for (std::uint32_t i = 0; i < count; ++i) {
    const ByteString name = container.mediaTypeAt(i);
    expect(!name.empty(), "mediaTypeAt of " + valueText(i) + " gave an empty name");
    expectSame("findMediaTypeRank of " + valueText(view(name)), container.mediaTypeRankAt(i),
               container.findMediaTypeRank(name));
  }
}

void endsMediaTypes(WatchedEngine& engine) {
  ContainerInterface& container = engine.container();
  for (const std::uint32_t index : {container.mediaTypeCount(), 0x7FFFFFFFU, 0xFFFFFFFFU}) {
    expectSame("mediaTypeAt of " + valueText(index), "", view(container.mediaTypeAt(index)));
    expectSame("mediaTypeRankAt of " + valueText(index), 0, container.mediaTypeRankAt(index));
  }
}

void ranksNoOther(WatchedEngine& engine) {
  for (const char* name : {"", "none/none", "text/"}) {
    expectSame("findMediaTypeRank of " + valueText(name), -1,
               engine.container().findMediaTypeRank(toByteString(name)));
  }
}

void keepsItsProgram(WatchedEngine& engine) {
  const UIDList first = engine.container().getProgramUIDs();
  const auto calls = engine.record.take();
  expect(std::count(calls.begin(), calls.end(), "newUID") <=
             static_cast<std::ptrdiff_t>(first.count()),
         "more UIDs were fetched than there are programs");
  const UIDList second = engine.container().getProgramUIDs();
  expectSame("getProgramUIDs, count", first.count(), second.count());
  const auto* other = second.head();
  for (const auto* node = first.head(); node != nullptr; node = node->next, other = other->next) {
    expectSame("getProgramUIDs once more", node->value, other->value);
  }
}

void activatesNoOther(WatchedEngine& engine) {
  static_cast<void>(engine.container().getProgramUIDs());  // none is unassigned from here on
  for (const UID uid : {UID{0}, UID{12345}, kNoUID}) {
    expectSame("activateProgram of " + valueText(uid), kGeneralFailure,
               engine.container().activateProgram(uid));
  }
}

void deactivatesAtAnyTime(WatchedEngine& engine) {
  for (const bool keeps : {true, false, false, true}) {
    expectSame("deactivate", kSuccess, engine.container().deactivate(keeps));
  }
}

constexpr ContractCheck kContainerChecks[] = {
    {"container.before-attach", kTables,
     "before attach there is no UID, no path and no program, and open gives 0x80100001",
     knowsNothingBeforeAttach},
    {"container.uid", kTables, "getContainerUID gives what attach was given", keepsItsUid},
    {"container.slots-in-order", kTables, "the slots answer in the order of the table",
     answersInOrder},
    {"container.open-refuses", kTables,
     "what is no local file is not opened: 0x80100001 and no stream", opensNothing},
    {"container.probe-refuses", kTables,
     "what is no local file is not recognised, and no format is added to the list",
     recognisesNothing},
    {"container.foreign-file", kTables, "a file of another format is refused", refusesItself},
    {"container.file-size-failure", kTables,
     "getFileSize without a source or an output gives 0x80100001 and leaves the output alone",
     keepsSizeOnFailure},
    {"container.media-types", kTables,
     "every media type has a name, and findMediaTypeRank knows its rank", listsMediaTypes},
    {"container.media-types-end", kTables,
     "past the last media type there are an empty name and rank 0", endsMediaTypes},
    {"container.media-type-unknown", kTables, "an unknown media type has rank -1", ranksNoOther},
    {"container.program-uids", kTables, "the program's UID is fetched once and stays",
     keepsItsProgram},
    {"container.program-unknown", kTables,
     "activateProgram of another program's UID gives 0x80100001", activatesNoOther},
    {"container.deactivate", kTables, "deactivate gives 0, at any time and again",
     deactivatesAtAnyTime},
};

}  // namespace

std::span<const ContractCheck> containerChecks() { return kContainerChecks; }

}  // namespace Ombe
