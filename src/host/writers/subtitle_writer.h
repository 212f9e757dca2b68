// Subtitles as other programs read them.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Ombe {

/// One subtitle as it was delivered; times in unsigned milliseconds.
struct Subtitle {
  std::uint32_t timestamp;
  std::uint32_t duration;
  std::string_view text;
};

/// Formats the subtitles of one file, appending to a text. Knows nothing of files. One thread at a
/// time.
class SubtitleWriter {
 public:
  SubtitleWriter() = default;
  SubtitleWriter(const SubtitleWriter&) = delete;
  SubtitleWriter& operator=(const SubtitleWriter&) = delete;
  virtual ~SubtitleWriter() = default;

  /// What stands before the first subtitle; nothing unless the format has a head.
  virtual void begin(std::string& /*out*/) {}
  virtual void append(const Subtitle& subtitle, std::string& out) = 0;
  /// What stands behind the last subtitle, and what could not be written before all were known.
  virtual void end(std::string& /*out*/) {}
};

/// A writer of the named format; null for a name that is not in writerNames().
std::unique_ptr<SubtitleWriter> makeWriter(std::string_view format);
std::vector<std::string> writerNames();

}  // namespace Ombe
