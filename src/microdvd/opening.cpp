// Reading a MicroDVD file into a stream.
#include <limits>
#include <string_view>
#include <utility>

#include "microdvd/microdvd_container.h"
#include "microdvd/microdvd_parser.h"
#include "ombe_core/media_source.h"
#include "ombe_core/subtitle_settings.h"
#include "text/file_reader.h"
#include "text/source_path.h"

namespace Ombe {
namespace {

/// Letter case counts.
bool hasSubtitleExtension(std::string_view uri) {
  const std::size_t dot = uri.rfind('.');
  if (dot == std::string_view::npos) return false;
  const std::string_view extension = uri.substr(dot);
  return extension == ".sub" || extension == ".txt";
}

/// What stands behind the last slash; empty without one.
ByteString fileName(std::string_view uri) {
  const std::size_t slash = uri.rfind('/');
  return slash == std::string_view::npos ? ByteString() : toByteString(uri.substr(slash + 1));
}

}  // namespace

Status MicroDVDContainer::open(const MediaSource& source) {
  const Lock lock(mutex);
  if (host == nullptr) return kGeneralFailure;
  const ByteString uri = source.getUri();
  if (!hasSubtitleExtension(view(uri))) return kGeneralFailure;
  ByteString path;
  if (uriToFilePath(uri, path) != kSuccess) return kGeneralFailure;
  ByteString text;
  if (!readSubtitleText(path, text, kWholeFile) || text.empty()) return kGeneralFailure;
  // The line splitter counts positions in 31 bits.
  if (text.length() > std::numeric_limits<std::int32_t>::max()) return kGeneralFailure;

  MicroDVDParser parser(*allocator, rateFromSetting(), fileFrameRateNumerator,
                        fileFrameRateDenominator);
  if (!parser.parse(reinterpret_cast<char*>(text.data()))) return kGeneralFailure;
  // The rate follows when nothing can fail any more, so that a failed open leaves the old one.
  addStream(parser.entries().list(), fileName(view(uri)), String(), String());
  parser.entries().letGo();
  frameRateNumerator = parser.rate().numerator;
  frameRateDenominator = parser.rate().denominator;
  sourcePath = std::move(path);
  return kSuccess;
}

/// Unset when the user chose none, or one with a zero part.
FrameRate MicroDVDContainer::rateFromSetting() const {
  SettingValue value;
  if (!host->getValue(frameRateSetting(), value)) return {};
  const auto ratio = value.asRatio();
  return ratio ? FrameRate{ratio->numerator, ratio->denominator} : FrameRate{};
}

}  // namespace Ombe
