// What the slots tell of an opened source.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ombe_core/setting_value.h"
#include "ombe_core/uid_list.h"

namespace Ombe {

class Session;

struct StreamDescription {
  UID uid;
  std::string name;
  std::string language;
  std::string region;
  std::string format;
  bool selected;
};

struct FileInfo {
  UID program;
  std::string programName;
  std::vector<StreamDescription> streams;
  std::optional<std::uint64_t> size;  ///< bytes
  std::optional<Ratio> frameRate;     ///< settings, as they stand after opening
  std::optional<std::string> codePage;
  std::optional<bool> autodetected;
  std::uint64_t subtitles = 0;
  std::optional<std::uint32_t> firstTime;  ///< start of the first delivered, milliseconds
  std::optional<std::uint32_t> lastTime;   ///< end of the last delivered, milliseconds
};

/// Of a session that has a source open; reads it to its end.
FileInfo describeFile(Session& session);

}  // namespace Ombe
