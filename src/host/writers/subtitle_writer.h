// Subtitles as other programs read them.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "host/session/subtitle.h"
#include "host/text/markup.h"

namespace Ombe {

struct WriterOptions {
  std::string format = "srt";  ///< of writerNames()
  bool vttStyle = false;       ///< WebVTT: a style block for colours that are none of its own
  ColorOrder colorOrder = ColorOrder::kRgb;
};

/// Formats the subtitles of one file, appending to a text. Knows nothing of files. One thread at a
/// time.
class SubtitleWriter {
 public:
  /// Which subtitles the format's readers take.
  enum class Takes { kAll, kEndNotBeforeStart, kEndAfterStart };

  explicit SubtitleWriter(Takes takes) : takes_(takes) {}
  SubtitleWriter(const SubtitleWriter&) = delete;
  SubtitleWriter& operator=(const SubtitleWriter&) = delete;
  virtual ~SubtitleWriter() = default;

  /// What stands before the first subtitle; nothing unless the format has a head.
  virtual void begin(std::string& /*out*/) {}
  /// Leaves out what readers of the format would not take, or would take for what it is not.
  void append(const Subtitle& subtitle, std::string& out);
  /// What could not be written before all subtitles were known.
  virtual void end(std::string& /*out*/) {}
  /// What is not in the output, in words for whoever asked for it.
  [[nodiscard]] virtual std::vector<std::string> remarks() const;

 private:
  virtual void write(const Subtitle& subtitle, std::string& out) = 0;
  [[nodiscard]] bool takes(const Subtitle& subtitle) const;

  const Takes takes_;
  bool isFirst_ = true;
  std::string header_;  // the line with the frame rate that was left out
  std::size_t leftOut_ = 0;
};

/// Null for a format that is not in writerNames().
std::unique_ptr<SubtitleWriter> makeWriter(const WriterOptions& options);
std::vector<std::string> writerNames();

}  // namespace Ombe
