// Lines of a MicroDVD file to entries.
#pragma once

#include <cstdint>
#include <string_view>

#include "microdvd/line_buffer.h"
#include "microdvd/lines/line_scan.h"
#include "microdvd/lines/rate_in_force.h"
#include "ombe_core/buffer_allocator.h"
#include "stream/entries/new_entries.h"

namespace Ombe {

/// Parses one file. Used by one thread, under the container's mutex.
class MicroDVDParser {
 public:
  /// `rate` is the user's, or unset. The allocator must outlive the entries. The stated numbers
  /// receive each rate that a header line states, the moment it is read.
  MicroDVDParser(IBufferAllocator& allocator, FrameRate rate, std::uint64_t& statedNumerator,
                 std::uint64_t& statedDenominator);

  /// Consumes a NUL-terminated text. False at the first line of another form and when a line is too
  /// long for the memory there is; throws std::bad_alloc when an entry cannot be made.
  bool parse(char* text);

  /// The rate of the times. Unset when none was given and no line was a subtitle; it may have one
  /// part then, from a header such as 25/0.
  [[nodiscard]] FrameRate rate() const { return rate_.rate(); }

  /// In the order of the lines.
  NewEntries& entries() { return entries_; }

 private:
  bool parseLine(const ScannedLine& scanned);
  void addEntry(const ScannedLine& line, std::string_view text);

  RateInForce rate_;
  std::uint64_t& statedNumerator_;
  std::uint64_t& statedDenominator_;
  LineBuffer buffer_;
  NewEntries entries_;
};

}  // namespace Ombe
