#include "stream/entries/entry_search.h"

#include <algorithm>

// Ends are in no order, and after a change of rate starts that wrapped may not be either, so each
// search looks at the entries one by one.

namespace Ombe {

SeekTarget seekForward(const EntryList& entries, std::uint32_t time) {
  const auto found = std::find_if(entries.begin(), entries.end(),
                                  [=](const MediaChunk* entry) { return endTime(*entry) >= time; });
  if (found == entries.end()) return {entries.count(), endTime(entries.last()) + 1};
  return {static_cast<std::int32_t>(found - entries.begin()), (*found)->timestamp};
}

SeekTarget seekBackward(const EntryList& entries, std::uint32_t time) {
  for (std::int32_t i = entries.count() - 1; i >= 0; --i) {
    if (entries[i].timestamp < time) return {i, entries[i].timestamp};
  }
  return {0, 0};
}

std::uint32_t nextTimeForward(const EntryList& entries, std::uint32_t time) {
  const auto found = std::find_if(entries.begin(), entries.end(), [=](const MediaChunk* entry) {
    return entry->timestamp >= time;
  });
  return found == entries.end() ? endTime(entries.last()) : (*found)->timestamp;
}

std::uint32_t nextTimeBackward(const EntryList& entries, std::uint32_t time) {
  for (std::int32_t i = entries.count() - 1; i >= 0; --i) {
    if (endTime(entries[i]) < time) return entries[i].timestamp;
  }
  return entries.first().timestamp - 1;
}

}  // namespace Ombe
