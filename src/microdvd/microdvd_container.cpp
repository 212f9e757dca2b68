#include "microdvd/microdvd_container.h"

#include <cstring>
#include <iterator>

#include "ombe_core/subtitle_settings.h"
#include "stream/text_format.ipp"

namespace Ombe {

template class SubtitleParserTemplate<MicroDVDContainer>;

void MicroDVDContainer::reservedSlot4(std::int32_t /*argument*/) {}

Status MicroDVDContainer::reservedSlot6(std::int32_t /*argument*/) { return kGeneralFailure; }

void MicroDVDContainer::defaultCodePage(char* buffer) { std::memcpy(buffer, "UTF8", 5); }

std::uint32_t MicroDVDContainer::mediaTypeCount() {
  return static_cast<std::uint32_t>(mediaTypeRanks.size());
}

ByteString MicroDVDContainer::mediaTypeAt(std::uint32_t index) {
  if (index >= mediaTypeRanks.size()) return {};
  return std::next(mediaTypeRanks.begin(), static_cast<std::ptrdiff_t>(index))->first;
}

std::int32_t MicroDVDContainer::mediaTypeRankAt(std::uint32_t index) {
  if (index >= mediaTypeRanks.size()) return 0;
  return std::next(mediaTypeRanks.begin(), static_cast<std::ptrdiff_t>(index))->second;
}

std::int32_t MicroDVDContainer::findMediaTypeRank(const ByteString& name) {
  const auto found = mediaTypeRanks.find(name);
  return found == mediaTypeRanks.end() ? -1 : found->second;
}

void MicroDVDContainer::settingChanged(const Setting& setting, const SettingValue* value) {
  if (value != nullptr && setting == frameRateSetting()) {
    if (const auto wanted = value->asRatio()) changeFrameRate(*wanted);
  }
  SubtitleParserTemplate::settingChanged(setting, value);
}

/// The entries keep no frame numbers: their times are rescaled from the old rate to the new one. A
/// ratio with a zero part means the file's own rate, or else the default.
void MicroDVDContainer::changeFrameRate(Ratio wanted) {
  const Lock lock(mutex);
  FrameRate rate{wanted.numerator, wanted.denominator};
  if (!rate.isSet()) rate = {fileFrameRateNumerator, fileFrameRateDenominator};
  if (!rate.isSet()) rate = kDefaultFrameRate;
  const FrameRate old{frameRateNumerator, frameRateDenominator};
  frameRateNumerator = rate.numerator;
  frameRateDenominator = rate.denominator;
  if (!old.isSet()) return;  // nothing was timed with it
  // The same rate again must leave the times alone; the quotients below round to a hair less than 1
  // for some, such as 23976/1000.
  if (old == rate) return;
  const double inverse =
      static_cast<double>(rate.denominator) / static_cast<double>(rate.numerator);
  scaleTimes(old.perSecond() * inverse);
}

}  // namespace Ombe
