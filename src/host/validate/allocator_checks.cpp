// Chunks, and the allocator that they go back through.
#include <new>
#include <string>

#include "host/session/chunk.h"
#include "host/validate/verdict.h"
#include "host/validate/watched_engine.h"
#include "ombe_core/buffer_allocator.h"
#include "ombe_core/media_chunk.h"

namespace Ombe {
namespace {

MediaChunk& readChunk(StreamInterface& stream) {
  MediaChunk* chunk = nullptr;
  expectSame("readStream", kSuccess, stream.readStream(&chunk));
  if (chunk == nullptr) report(Outcome::kNeedsSample, "name a file with a subtitle");
  return *chunk;
}

void carriesItsBytes(Playing& playing) {
  MediaChunk& chunk = readChunk(playing.stream);
  expectSame("a chunk's chunkSize", chunk.bufferSize(), chunk.chunkSize());
  if (chunk.bufferSize() != 0) {
    expect(chunk.lock() != nullptr, "lock of a chunk with bytes gave a null pointer");
    chunk.unlock();
  }
  chunk.allocator().deleteChunk(&chunk);
}

void bearsNull(Playing& playing) {
  MediaChunk& chunk = readChunk(playing.stream);
  IBufferAllocator& allocator = chunk.allocator();
  allocator.deleteChunk(nullptr);
  allocator.deleteChunk(&chunk);
  allocator.deleteChunk(nullptr);
}

void answersConstants(Playing& playing) {
  MediaChunk& chunk = readChunk(playing.stream);
  IBufferAllocator& allocator = chunk.allocator();
  expectSame("slot 2", false, allocator.reservedSlot2(1));
  allocator.reservedSlot3(9);
  const auto* value = reinterpret_cast<const std::uint32_t*>(&allocator) + sizeof(void*) / 4;
  expectSame("the value that slot 3 stores", 9U, *value);
  allocator.deleteChunk(&chunk);
}

/// Counts what becomes of it. Its memory is the host's, and it comes alive again when it is
/// deleted, so that doing so twice is seen.
class CountedChunk final : public MediaChunk {
 public:
  CountedChunk(IBufferAllocator& allocator, std::uint32_t size) : MediaChunk(allocator) {
    if (size != 0) setBuffer(new unsigned char[size], size);
  }
  ~CountedChunk() override { ++deletions; }
  unsigned char* lock() override { return ++locks, MediaChunk::lock(); }
  void unlock() override { ++unlocks, MediaChunk::unlock(); }
  static void* operator new(std::size_t /*size*/, void* place) { return place; }
  static void operator delete(void* place) {
    new (place) CountedChunk(*owner, 0);  // NOLINT(bugprone-unhandled-exception-at-new): in place
  }

  static inline IBufferAllocator* owner = nullptr;
  static inline int deletions = 0, locks = 0, unlocks = 0;
};

template <std::uint32_t kSize>
void deletesOnce(Playing& playing) {
  MediaChunk& chunk = readChunk(playing.stream);
  IBufferAllocator& allocator = chunk.allocator();
  alignas(CountedChunk) static unsigned char place[sizeof(CountedChunk)];
  CountedChunk::owner = &allocator;
  CountedChunk::deletions = CountedChunk::locks = CountedChunk::unlocks = 0;
  allocator.deleteChunk(new (place) CountedChunk(allocator, kSize));
  expectSame("how often deleteChunk deletes", 1, CountedChunk::deletions);
  expectSame("how often it unlocks", CountedChunk::locks, CountedChunk::unlocks);
  if (kSize == 0) expectSame("how often it locks", 0, CountedChunk::locks);
  allocator.deleteChunk(&chunk);
}

void keepsDelivered(Playing& playing) {
  const Chunk chunk(&readChunk(playing.stream));
  const std::string text(chunk.text());
  const std::uint32_t start = chunk.timestamp();
  while (readOne(playing.stream) != "end") {
  }
  playing.stream.seekStream(0, nullptr, true);
  readOne(playing.stream);
  expectSame("a chunk's text after further reads", text, chunk.text());
  expectSame("its time", start, chunk.timestamp());
}

void outlivesItsStream(Playing& playing) {
  const Chunk chunk(&readChunk(playing.stream));
  const std::string text(chunk.text());
  expectSame("deactivate", kSuccess, playing.container().deactivate(false));
  expectSame("a chunk's text after its stream is gone", text, chunk.text());
}

void deliversEachAnew(Playing& playing) {
  MediaChunk& first = readChunk(playing.stream);
  playing.stream.resetStream();
  MediaChunk& second = readChunk(playing.stream);
  expect(&first != &second, "the same entry was delivered twice as one chunk");
  first.allocator().deleteChunk(&first);
  second.allocator().deleteChunk(&second);
}

void leavesTheHostsAllocator(const Subject& subject) {
  struct Counting final : StandardAllocator<char> {
    char* allocate(std::uint32_t count) override {
      return ++live, StandardAllocator::allocate(count);
    }
    void deallocate(char* block) override {
      live -= block == nullptr ? 0 : 1;
      StandardAllocator::deallocate(block);
    }
    int live = 0;
  } allocator;
  {
    WatchedEngine engine(subject);
    engine.host.language = "de-AT";
    engine.host.languageAllocator = &allocator;
    static_cast<void>(engine.activate());
    engine.container().deactivate(false);
    expectSame("blocks of the host's allocator that are kept", 0, allocator.live);
  }
}

constexpr ContractCheck kAllocatorChecks[] = {
    {"allocator.chunk", kOwnership, "a delivered chunk has its bytes and their number",
     carriesItsBytes},
    {"allocator.null", kTables, "deleteChunk takes a null pointer", bearsNull},
    {"allocator.constants", kTables, "slot 2 answers false, and slot 3 stores its argument",
     answersConstants},
    {"allocator.deletes-once", kOwnership,
     "deleteChunk deletes a chunk once, and unlocks as it locks", deletesOnce<5>},
    {"allocator.empty-chunk", kOwnership, "a chunk without bytes is deleted once and never locked",
     deletesOnce<0>},
    {"allocator.keeps-delivered", kOwnership,
     "a delivered chunk stays as it is while others are read", keepsDelivered},
    {"allocator.outlives-stream", kOwnership,
     "a chunk may be given back when its stream is gone, while the component lives",
     outlivesItsStream},
    {"allocator.each-anew", kOwnership, "every read delivers a chunk of its own", deliversEachAnew},
    {"allocator.of-the-host", kOwnership, "nothing is kept that came from the host's own allocator",
     leavesTheHostsAllocator},
};

}  // namespace

std::span<const ContractCheck> allocatorChecks() { return kAllocatorChecks; }

}  // namespace Ombe
