// Lines of a MicroDVD file to entries.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

#include "microdvd/line_buffer.h"
#include "microdvd/lines/frame_rate.h"
#include "microdvd/lines/line_scan.h"
#include "ombe_core/buffer_allocator.h"
#include "stream/entry_list.h"

namespace Ombe {

/// Parses one file. Owns the entries that it made, and releases them on destruction, until
/// `entriesTaken` says that a stream has them. Used by one thread, under the container's mutex.
class MicroDVDParser {
 public:
  /// Told of each rate that a header line states, the moment it is read.
  using HeaderObserver = std::function<void(FrameRate)>;

  /// `rate` is the user's, or unset. The allocator must outlive the entries.
  MicroDVDParser(IBufferAllocator& allocator, FrameRate rate, HeaderObserver onHeader);
  ~MicroDVDParser();
  MicroDVDParser(const MicroDVDParser&) = delete;
  MicroDVDParser& operator=(const MicroDVDParser&) = delete;

  /// Consumes a NUL-terminated text. False at the first line of another form and when a line is too
  /// long for the memory there is; throws std::bad_alloc when an entry cannot be made.
  bool parse(char* text);

  /// The rate of the times; unset when no line needed one.
  [[nodiscard]] FrameRate rate() const { return rate_; }

  /// In the order of the lines.
  EntryList& entries() { return entries_; }
  void entriesTaken() { entries_ = {}; }

 private:
  bool parseLine(const ScannedLine& scanned);
  bool takeHeader(const ScannedLine& line, char* text);
  void addEntry(const ScannedLine& line, std::string_view text);

  IBufferAllocator& allocator_;
  FrameRate rate_;
  HeaderObserver onHeader_;
  LineBuffer buffer_;
  EntryList entries_;
};

}  // namespace Ombe
