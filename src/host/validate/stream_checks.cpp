// What a stream says of itself.
#include <algorithm>
#include <cstring>

#include "host/validate/verdict.h"
#include "host/validate/watched_engine.h"
#include "ombe_core/image_properties.h"

namespace Ombe {
namespace {

void answersConstants(Playing& playing) {
  StreamInterface& stream = playing.stream;
  expectSame("slot 2", 0, stream.reservedSlot2());
  expectSame("slot 7", 320, stream.reservedSlot7());
  expectSame("slot 14", 0, stream.reservedSlot14());
  expectSame("slot 17, isEOS", false, stream.isEOS());
}

void isNoVideo(Playing& playing) {
  unsigned numerator = 7, denominator = 9;
  expectSame("framerate", false, playing.stream.framerate(&numerator, &denominator));
  expect(numerator == 7 && denominator == 9, "framerate gave false and wrote to its outputs");
}

void tellsOnlyWhatIsAsked(Playing& playing) {
  StreamInterface& stream = playing.stream;
  expectSame("getStreamInfo without outputs", false,
             stream.getStreamInfo(nullptr, nullptr, nullptr));
  ByteString name = toByteString("kept"), nameAlone = toByteString("kept");
  String language("kept"), region("kept");
  const bool hasAny = stream.getStreamInfo(&name, &language, &region);
  const bool hasWritten = view(name) != "kept" || language != "kept" || region != "kept";
  expectSame("getStreamInfo with all outputs", hasWritten, hasAny);
  const bool hasName = stream.getStreamInfo(&nameAlone, nullptr, nullptr);
  expectSame("getStreamInfo of the name alone", view(name) != "kept", hasName);
  expectSame("the name then", view(name), view(nameAlone));
}

void namesItsFormat(Playing& playing) {
  const FormatRequirement* format = playing.stream.getFormat();
  expect(format != nullptr, "getFormat gave a null pointer");
  const std::string name(format->name, ::strnlen(format->name, sizeof format->name));
  expect(!name.empty(), "getFormat gave a format without a name");
  const auto calls = playing.record.take();
  expect(std::count(calls.begin(), calls.end(), "supportsFormat " + name) != 0,
         "the engine was never asked whether it shows " + valueText(name));
}

void hasAFrame(Playing& playing) {
  const ImageProperties* frame = playing.stream.getImageProperties();
  expect(frame != nullptr, "getImageProperties gave a null pointer");
  expect(frame->frameWidth() != 0 && frame->frameHeight() != 0, "its frame has no size");
}

void hasOneTrack(Playing& playing) {
  StreamInterface* primary = playing.stream.getPrimaryTrack();
  expect(primary != nullptr, "getPrimaryTrack gave a null pointer");
  expect(playing.stream.getAuxiliaryTracks(0xFFFFFFFFU) == nullptr,
         "getAuxiliaryTracks past the last track gave a pointer");
}

void knowsItsContainer(Playing& playing) {
  expectSame("containerUID", WatchedEngine::kContainerUID, playing.stream.containerUID());
}

void keepsWhatIsSet(Playing& playing) {
  StreamInterface& stream = playing.stream;
  expectSame("readSpeed of a new stream", 1000, stream.readSpeed());
  for (const std::int32_t speed : {2000, -1000, 1, -1, 0, 1000}) {
    expectSame("setReadSpeed of " + valueText(speed), true, stream.setReadSpeed(speed));
    expectSame("readSpeed after it", speed, stream.readSpeed());
  }
  for (const std::int32_t number : {6, 0}) {
    stream.setReadMode(static_cast<StreamReadMode>(number));
    expectSame("readMode", number, static_cast<std::int32_t>(stream.readMode()));
    stream.setReadInterval(number + 1);
    expectSame("getReadInterval", number + 1, stream.getReadInterval());
  }
}

constexpr ContractCheck kStreamChecks[] = {
    {"stream.constants", kTables, "slots 2, 7, 14 and 17 answer 0, 320, 0 and false",
     answersConstants},
    {"stream.framerate", kTables, "framerate gives false and leaves its outputs alone", isNoVideo},
    {"stream.info", kTables,
     "getStreamInfo writes what it knows into the outputs given, and is true when it wrote",
     tellsOnlyWhatIsAsked},
    {"stream.format", kRecords, "getFormat names the format that probe asked the engine for",
     namesItsFormat},
    {"stream.image-properties", kTables, "getImageProperties gives a frame with a size", hasAFrame},
    {"stream.tracks", kTables,
     "there is a primary track, and past the last auxiliary one a null pointer", hasOneTrack},
    {"stream.container-uid", kTables, "the stream carries its container's UID", knowsItsContainer},
    {"stream.keeps", kTables, "speed, mode and interval stay as they were set", keepsWhatIsSet},
};

}  // namespace

std::span<const ContractCheck> streamChecks() { return kStreamChecks; }

}  // namespace Ombe
