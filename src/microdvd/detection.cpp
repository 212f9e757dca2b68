// Whether a source is a MicroDVD file.
#include <limits>

#include "microdvd/lines/line_scan.h"
#include "microdvd/lines/text_tokenizer.h"
#include "microdvd/microdvd_container.h"
#include "ombe_core/media_source.h"
#include "text/file_reader.h"
#include "text/source_path.h"

namespace Ombe {
namespace {

constexpr std::uint32_t kHeadSize = 1024;  // bytes that usually tell

/// Judges by the first line that is not empty. Consumes the text.
bool beginsWithFrameNumbers(ByteString& text) {
  if (text.empty() || text.length() > std::numeric_limits<std::int32_t>::max()) return false;
  TextTokenizer lines(reinterpret_cast<char*>(text.data()));
  const char* first = lines.nextToken("\r\n", nullptr);
  return first != nullptr && scanLine(first).count >= 2;
}

bool isMicroDVD(SettingStore* store, const MediaSource& source) {
  ByteString path;
  if (uriToFilePath(source.getUri(), path) != kSuccess) return false;
  ByteString text;
  // A file shorter than a head, and one whose head does not decode, is read whole.
  const bool isRead = readDecodedText(store, path, &text, kHeadSize) ||
                      readDecodedText(store, path, &text, kWholeFile);
  return isRead && beginsWithFrameNumbers(text);
}

}  // namespace

bool MicroDVDContainer::probe(const MediaSource& source, std::int32_t /*reserved1*/,
                              std::int32_t /*reserved2*/, FormatRequirementList* missing) {
  return isMicroDVD(host, source) && isShown(getPluginContext(), missing);
}

}  // namespace Ombe
