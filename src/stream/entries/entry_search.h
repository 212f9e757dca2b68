// Finding entries by time. All times are unsigned milliseconds on the entries' time line, and all
// lists hold at least one entry.
#pragma once

#include <cstdint>

#include "stream/entries/entry_list.h"

namespace Ombe {

/// Where a seek ends: the index that becomes current and the time to report.
struct SeekTarget {
  std::int32_t index;
  std::uint32_t time;
};

/// Forward: the first entry that is still showing at `time` or comes later; none gives the index
/// behind the list and the millisecond after the last entry's end.
SeekTarget seekForward(const EntryList& entries, std::uint32_t time);

/// Backward: the last entry that begins before `time`; none gives index 0 and time 0.
SeekTarget seekBackward(const EntryList& entries, std::uint32_t time);

/// Start of the first entry that begins at `time` or later; none gives the end of the last entry.
std::uint32_t nextTimeForward(const EntryList& entries, std::uint32_t time);

/// Start of the last entry that ends before `time`; none gives the millisecond before the first
/// entry, which wraps for an entry at 0.
std::uint32_t nextTimeBackward(const EntryList& entries, std::uint32_t time);

}  // namespace Ombe
