// The stored subtitles of one stream.
#pragma once

#include <cstdint>
#include <vector>

#include "ombe_core/media_chunk.h"

namespace Ombe {

/// Pointers to subtitle entries: chunks whose buffer is the text, `timestamp` the start and
/// `duration` the length in milliseconds on the source's own time line. Owns none of them; a copy
/// copies pointers. Used under the container's mutex.
class EntryList {
 public:
  [[nodiscard]] std::int32_t count() const { return static_cast<std::int32_t>(entries_.size()); }
  [[nodiscard]] bool empty() const { return entries_.empty(); }
  [[nodiscard]] bool holds(std::int32_t index) const { return index >= 0 && index < count(); }

  MediaChunk& operator[](std::int32_t index) const {
    return *entries_[static_cast<std::size_t>(index)];
  }
  [[nodiscard]] MediaChunk& first() const { return *entries_.front(); }
  [[nodiscard]] MediaChunk& last() const { return *entries_.back(); }
  [[nodiscard]] auto begin() const { return entries_.begin(); }
  [[nodiscard]] auto end() const { return entries_.end(); }

  void append(MediaChunk* entry) { entries_.push_back(entry); }

 private:
  std::vector<MediaChunk*> entries_;

  friend void sortEntries(EntryList& list);
};

/// End of an entry in milliseconds; the 32-bit sum wraps.
inline std::uint32_t endTime(const MediaChunk& entry) { return entry.timestamp + entry.duration; }

/// Sorts by `timestamp`, ascending.
void sortEntries(EntryList& list);

/// Multiplies start and end of every entry by `factor`, truncating; the duration becomes their
/// difference. A product that no signed 64-bit integer holds counts as 0. The order of the list
/// stays as it is.
void scaleEntries(const EntryList& list, double factor);

}  // namespace Ombe
