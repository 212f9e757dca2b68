// One JSON object a line.
#pragma once

#include "host/writers/subtitle_writer.h"

namespace Ombe {

/// {"timestamp": 1000, "duration": 1000, "text": "Hello"}, in UTF-8; bytes that are not become
/// U+FFFD.
class JsonlWriter final : public SubtitleWriter {
 public:
  void append(const Subtitle& subtitle, std::string& out) override;
};

}  // namespace Ombe
