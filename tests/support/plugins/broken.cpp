// A plug-in that plays any file whose name ends in ".three" as three entries: right, or
// with the fault whose name it is linked with.
// NOLINTBEGIN: its faults are what it is for.
#include <ombe_core/buffer_allocator.h>
#include <ombe_core/container_host.h>
#include <ombe_core/container_interface.h>
#include <ombe_core/image_properties.h>
#include <ombe_core/media_chunk.h>
#include <ombe_core/media_source.h>
#include <ombe_core/plugin.h>
#include <ombe_core/plugin_context.h>
#include <ombe_core/stream_interface.h>
#include <ombe_core/string_tools.h>
#include <ombe_core/time_source.h>

#include <cstring>
#include <filesystem>
#include <mutex>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>

using namespace Ombe;

extern const char fault[];

namespace {

bool has(std::string_view name) { return name == fault; }

struct Allocator final : IBufferAllocator {
  void* allocate(std::uint32_t, std::uint32_t, std::uint32_t) override { return nullptr; }
  void deleteChunk(MediaChunk* chunk) override {
    if (chunk == nullptr) return;
    if (chunk->bufferSize() != 0) {
      delete[] chunk->lock();
      chunk->unlock();
    }
    delete chunk;
    if (has("FREES_CHUNKS_TWICE")) delete chunk;
  }
};

/// Entries of a second each, at 1, 2 and 3 seconds.
struct Stream final : StreamInterface {
  Stream(std::recursive_mutex& lock, Allocator& chunks, ContainerHost& engine, UID container,
         UID stream)
      : StreamInterface(container, stream, nullptr), mutex(lock), allocator(chunks), host(engine) {
    frame.setFrameSize(640, 480);
  }
  bool getStreamInfo(ByteString* name, String*, String*) override {
    if (name != nullptr) *name = toByteString("three");
    return name != nullptr;
  }
  const FormatRequirement* getFormat() override { return &format; }
  const ImageProperties* getImageProperties() override { return &frame; }
  std::int32_t reservedSlot7() override { return 320; }
  Status setTimeSource(TimeSource* source) override {
    const std::lock_guard guard(mutex);
    if (source != nullptr) clock = source;
    return source == nullptr ? kNothingDue : kSuccess;
  }
  Status resetStream() override {
    const std::lock_guard guard(mutex);
    next = readSpeed() < 0 ? 3 : 1;
    return kSuccess;
  }
  Status getNextChunkTime(std::uint32_t, std::uint32_t time, std::uint32_t* out) override {
    const std::lock_guard guard(mutex);
    if (out == nullptr || readSpeed() == 0) return kGeneralFailure;
    *out = time > 3000 ? 4000 : std::max(1000U, (time + 999) / 1000 * 1000);
    if (has("WRITES_OUTSIDE")) out[1] = 1;
    return kSuccess;
  }
  Status seekStream(std::uint32_t time, std::uint32_t* out, bool) override {
    const std::lock_guard guard(mutex);
    if (has("TOUCHES_OUTPUTS") && out != nullptr) *out = 0;
    if (readSpeed() == 0) return kGeneralFailure;
    next = time > 4000 ? 4 : std::max(1, static_cast<int>(time + 999) / 1000 - 1);
    if (out != nullptr) *out = static_cast<std::uint32_t>(next) * 1000;
    return kSuccess;
  }
  Status readStream(MediaChunk** out) override {
    if (has("KEEPS_ITS_LOCK")) mutex.lock();
    const std::lock_guard guard(mutex);
    if (out == nullptr) return kGeneralFailure;
    *out = nullptr;
    if (clock == nullptr || clock->currentTime() < 0) return kNothingDue;
    const int entry = next;
    if (isReleased || readSpeed() == 0 || entry < 1 || entry > 3) return kSuccess;
    // An offset may be anything, not a number too, of which max makes 0.
    const double shifted = std::max(0.0, entry * 1000 + host.getTimeOffset());
    const auto start = static_cast<std::uint32_t>(std::min(shifted, 4.0e9));
    if (clock->currentTime() < static_cast<std::int32_t>(start)) return kNothingDue;
    if (isReleased) return kSuccess;
    next = entry + (readSpeed() < 0 ? -1 : 1);
    *out = new MediaChunk(allocator);
    auto* text = new unsigned char[2]{'e', static_cast<unsigned char>('0' + entry)};
    (*out)->setBuffer(text, 2);
    (*out)->chunkSize() = 2;
    (*out)->timestamp = start;
    (*out)->duration = 1000;
    lastChunkTime = start + 1000;
    [[maybe_unused]] static char* volatile kept;  // or else the compiler leaves it out
    if (has("LEAKS")) kept = new char[40];
    return kSuccess;
  }
  bool setReadSpeed(std::int32_t speed) override {
    const std::lock_guard guard(mutex);
    return StreamInterface::setReadSpeed(speed);
  }

  std::recursive_mutex& mutex;
  Allocator& allocator;
  ContainerHost& host;
  TimeSource* clock = nullptr;
  FormatRequirement format{"UTF8\0\0\0", {20, 4, 0}};
  ImageProperties frame;
  int next = 1;
  bool isReleased = false;
};

struct Broken final : Plugin, ContainerInterface {
  using Plugin::Plugin;

  Status getInterface(const String& identifier, void** out) override {
    const bool isContainer = view(identifier) == kContainerInterfaceId;
    *out = isContainer ? static_cast<ContainerInterface*>(this) : nullptr;
    if (isContainer) return kSuccess;
    return has("GIVES_THE_WRONG_STATUS") ? kGeneralFailure : kUnknownInterface;
  }
  static std::string pathOf(const MediaSource& source) {
    const ByteString uri = source.getUri();
    const std::string path(view(uri));
    return path.starts_with("file:///") && path.ends_with(".three") ? path.substr(7) : "";
  }
  bool probe(const MediaSource& source, std::int32_t, std::int32_t,
             FormatRequirementList* missing) override {
    if (pathOf(source).empty()) return false;
    if (getPluginContext()->supportsFormat("UTF8")) return true;
    if (missing != nullptr) missing->push_back({"UTF8\0\0\0", {20, 4, 0}});
    return false;
  }
  Status open(const MediaSource& source) override {
    const std::lock_guard guard(mutex);
    const std::string file = pathOf(source);
    if (file.empty() || host == nullptr) {
      if (has("THROWS")) throw std::runtime_error("no such file");
      return kGeneralFailure;
    }
    while (has("HANGS")) std::this_thread::sleep_for(std::chrono::seconds(1));
    if (has("CRASHES")) static_cast<volatile int*>(nullptr)[0] = 1;
    if (has("CALLS_THE_HOST_WRONGLY")) host->reservedSlot5();
    path = file;
    const UID uid = host->newUID();
    streams[count++] = new Stream(mutex, allocator, *host, getContainerUID(), uid);
    return kSuccess;
  }
  void reservedSlot4(std::int32_t) override {}
  Status reservedSlot6(std::int32_t) override { return kGeneralFailure; }
  ByteString getSourcePath() override { return toByteString(path); }
  UIDList getProgramUIDs() override {
    UIDList list;
    if (program == kNoUID && host != nullptr) program = host->newUID();
    list.append(program);
    return list;
  }
  ByteString getProgramName(UID) override { return {}; }
  Status activateProgram(UID uid) override {
    const std::lock_guard guard(mutex);
    if (uid != program || host == nullptr) return kGeneralFailure;
    for (int i = 0; i < count; ++i) host->announceStream(streams[i]);
    if (count > 0) host->selectStream(streams[0]->streamUID(), 1);
    return kSuccess;
  }
  Status deactivate(bool keepStreams) override {
    const std::lock_guard guard(mutex);
    while (!keepStreams && count > 0) {
      Stream* stream = streams[--count];
      stream->isReleased = true;
      host->withdrawStream(stream->streamUID());
      if (has("DELETES_STREAMS")) delete stream;
    }
    return kSuccess;
  }
  Status getFileSize(std::uint64_t* size) override {
    if (path.empty() || size == nullptr) return kGeneralFailure;
    *size = std::filesystem::file_size(path);
    return kSuccess;
  }
  std::int32_t findMediaTypeRank(const ByteString& name) override {
    return view(name) == "text/x-three" ? 1 : -1;
  }
  Status close() override { return has("HAS_ITS_SLOTS_IN_ANOTHER_ORDER") ? 1 : kSuccess; }
  std::uint32_t mediaTypeCount() override { return has("HAS_ITS_SLOTS_IN_ANOTHER_ORDER") ? 0 : 1; }
  ByteString mediaTypeAt(std::uint32_t index) override {
    return index == 0 ? toByteString("text/x-three") : ByteString();
  }
  std::int32_t mediaTypeRankAt(std::uint32_t index) override { return index == 0 ? 1 : 0; }

  std::recursive_mutex mutex;
  Allocator allocator;
  std::string path;
  UID program = kNoUID;
  Stream* streams[8] = {};
  int count = 0;
};

}  // namespace

extern "C" OMBE_API Status __getPlugin(PluginContext* context, Plugin** out) {
  *out = new Broken(context);
  return kSuccess;
}
// NOLINTEND
