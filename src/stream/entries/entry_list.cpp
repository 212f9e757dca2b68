#include "stream/entries/entry_list.h"

#include <algorithm>

namespace Ombe {
namespace {

/// Low 32 bits of the product truncated toward zero.
std::uint32_t scaled(std::uint32_t time, double factor) {
  constexpr double kLimit = 9223372036854775808.0;  // 2^63
  const double product = static_cast<double>(time) * factor;
  if (!(product > -kLimit && product < kLimit)) return 0;
  return static_cast<std::uint32_t>(static_cast<std::int64_t>(product));
}

}  // namespace

void sortEntries(EntryList& list) {
  const auto earlier = [](const MediaChunk* a, const MediaChunk* b) {
    return a->timestamp < b->timestamp;
  };
  // Files are nearly always in order already. Equal times keep the order of the lines, which is
  // what a reader of the file expects.
  if (std::is_sorted(list.entries_.begin(), list.entries_.end(), earlier)) return;
  std::stable_sort(list.entries_.begin(), list.entries_.end(), earlier);
}

void scaleEntries(const EntryList& list, double factor) {
  for (MediaChunk* entry : list) {
    const std::uint32_t start = scaled(entry->timestamp, factor);
    const std::uint32_t end = scaled(endTime(*entry), factor);
    entry->timestamp = start;
    entry->duration = end - start;
  }
}

}  // namespace Ombe
