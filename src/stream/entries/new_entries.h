// Entries on their way into a stream.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include "stream/entries/entry_list.h"
#include "stream/entries/text_chunk.h"

namespace Ombe {

/// Owns the entries that a format makes of a file, and releases them on destruction unless a stream
/// has taken them. Used by one thread. The allocator must outlive the entries.
class NewEntries {
 public:
  explicit NewEntries(IBufferAllocator& allocator) : allocator_(allocator) {}
  NewEntries(const NewEntries&) = delete;
  NewEntries& operator=(const NewEntries&) = delete;
  ~NewEntries() {
    for (MediaChunk* entry : list_) allocator_.deleteChunk(entry);
  }

  /// Appends an entry, and returns it, over `text`, of `size` bytes, which it takes over; times in
  /// milliseconds. Throws std::bad_alloc, with the text freed.
  MediaChunk& add(std::unique_ptr<unsigned char[]> text, std::uint32_t size, std::uint32_t start,
                  std::uint32_t end) {
    OwnedChunk entry = createTextChunk(allocator_, std::move(text), size);
    entry->timestamp = start;
    entry->duration = end - start;
    list_.append(entry.get());
    return *entry.release();
  }

  /// In the order in which they were added, or sorted by a stream that did not take them.
  EntryList& list() { return list_; }

  /// A stream has them.
  void letGo() { list_ = {}; }

 private:
  IBufferAllocator& allocator_;
  EntryList list_;
};

}  // namespace Ombe
