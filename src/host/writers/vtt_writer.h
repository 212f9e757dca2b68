// WebVTT.
#pragma once

#include <set>
#include <string>

#include "host/writers/subtitle_writer.h"

namespace Ombe {

/// Cues without numbers, texts in UTF-8 with their markup as WebVTT has it: <i>, <b>, <u>, and
/// colours as classes. The classes' style block has to stand before the first cue, so cues are kept
/// until `end`. Lines that would show nothing are left out, since the first of them would end the
/// cue.
class VttWriter final : public SubtitleWriter {
 public:
  void append(const Subtitle& subtitle, std::string& out) override;
  void end(std::string& out) override;

 private:
  void appendLine(std::string_view line);
  bool appendTag(std::string_view& rest);

  std::string cues_;
  std::set<std::string> colors_;  // six lower-case digits each
  std::string open_;              // letters of the tags that are open, outermost first
};

}  // namespace Ombe
