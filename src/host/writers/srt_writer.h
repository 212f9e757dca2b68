// SubRip.
#pragma once

#include "host/writers/subtitle_writer.h"

namespace Ombe {

/// Index, times, text, blank line, numbered from 1. The end is the 32-bit sum of start and
/// duration. Tags are written as players read them. Lines that would show nothing are left out of a
/// text, since the first of them would end the subtitle for most players and lose what follows; a
/// subtitle without text keeps its number and times. Bytes that are no UTF-8 stay as they are.
class SrtWriter final : public SubtitleWriter {
 public:
  void append(const Subtitle& subtitle, std::string& out) override;

 private:
  std::uint64_t index_ = 0;
};

}  // namespace Ombe
