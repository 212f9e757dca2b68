#include "container/stream_choice.h"

#include <string>

#include "ombe_core/string_tools.h"

namespace Ombe {
namespace {

UID matchingStream(const std::vector<StreamLanguage>& streams, std::string_view preferred) {
  const std::size_t hyphen = preferred.find('-');
  const std::string_view language = preferred.substr(0, hyphen);
  const std::string_view region =
      hyphen == std::string_view::npos ? std::string_view() : preferred.substr(hyphen + 1);
  const std::string otherForm = StringTools::convertLanguageCode(std::string(language));
  UID chosen = 0;
  for (const StreamLanguage& stream : streams) {
    if (stream.language != language && stream.language != otherForm) continue;
    const bool isExact = !region.empty() && stream.region == region;
    if (isExact || chosen == 0) chosen = stream.uid;
  }
  return chosen;
}

}  // namespace

UID chooseStream(const std::vector<StreamLanguage>& streams, std::string_view preferred) {
  const bool isWished = !preferred.empty() && streams.size() >= 2;
  const UID chosen = isWished ? matchingStream(streams, preferred) : 0;
  return chosen == 0 ? streams.front().uid : chosen;
}

}  // namespace Ombe
