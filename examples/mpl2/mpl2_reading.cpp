// Recognising an MPL2 file and reading it into a stream.
#include <cstring>
#include <memory>
#include <utility>

#include "mpl2/mpl2_container.h"
#include "mpl2/mpl2_line.h"
#include "ombe_core/media_source.h"
#include "stream/entries/new_entries.h"
#include "text/file_reader.h"
#include "text/source_path.h"

namespace Ombe {
namespace {

void add(NewEntries& entries, const Mpl2Line& line) {
  const auto size = static_cast<std::uint32_t>(line.text.size());
  std::unique_ptr<unsigned char[]> copy(new unsigned char[size]);
  if (size != 0) std::memcpy(copy.get(), line.text.data(), size);
  entries.add(std::move(copy), size, line.startMs, line.endMs);
}

}  // namespace

/// Judges by the first line; the whole file is read, since a head of it may end inside a character.
bool Mpl2Container::probe(const MediaSource& source, std::int32_t /*reserved1*/,
                          std::int32_t /*reserved2*/, FormatRequirementList* missing) {
  ByteString path;
  ByteString text;
  if (uriToFilePath(source.getUri(), path) != kSuccess ||
      !readDecodedText(host, path, &text, kWholeFile)) {
    return false;
  }
  std::string_view rest = view(text);
  return parseMpl2Line(takeLine(rest)) && isShown(getPluginContext(), missing);
}

Status Mpl2Container::open(const MediaSource& source) {
  const Lock lock(mutex);
  ByteString path;
  ByteString text;
  if (host == nullptr || uriToFilePath(source.getUri(), path) != kSuccess ||
      !readSubtitleText(path, text, kWholeFile)) {
    return kGeneralFailure;
  }
  NewEntries entries(*allocator);
  std::string_view rest = view(text);
  for (std::string_view line = takeLine(rest); !line.empty(); line = takeLine(rest)) {
    const auto parsed = parseMpl2Line(line);
    if (!parsed) return kGeneralFailure;
    add(entries, *parsed);
  }
  if (entries.list().empty()) return kGeneralFailure;
  const std::string_view name = view(path).substr(view(path).rfind('/') + 1);
  addStream(entries.list(), toByteString(name), String(), String());
  entries.letGo();  // the stream's now
  sourcePath = std::move(path);
  return kSuccess;
}

}  // namespace Ombe
