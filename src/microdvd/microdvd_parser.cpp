#include "microdvd/microdvd_parser.h"

#include <cstring>
#include <memory>
#include <utility>

#include "microdvd/lines/style_codes.h"
#include "microdvd/lines/text_tokenizer.h"
#include "ombe_core/logger.h"

namespace Ombe {
namespace {

/// Looks for bars with memchr: most texts have none, and std::replace goes byte by byte.
void breakLines(char* text, std::size_t length) {
  char* const end = text + length;
  while (void* bar = std::memchr(text, '|', static_cast<std::size_t>(end - text))) {
    text = static_cast<char*>(bar);
    *text++ = '\n';
  }
}

void logEntry(MediaChunk& entry) {
  const ChunkAccess access(entry);
  Logger::instance().log("Container", "open", 422, "got subtitle start: %d duration: %d '%s'",
                         static_cast<int>(entry.timestamp), static_cast<int>(entry.duration),
                         reinterpret_cast<const char*>(access.bytes()));
}

}  // namespace

MicroDVDParser::MicroDVDParser(IBufferAllocator& allocator, FrameRate rate,
                               std::uint64_t& statedNumerator, std::uint64_t& statedDenominator)
    : rate_(rate),
      statedNumerator_(statedNumerator),
      statedDenominator_(statedDenominator),
      entries_(allocator) {}

bool MicroDVDParser::parse(char* text) {
  TextTokenizer lines(text);
  std::uint32_t reported = 0;
  while (const char* line = lines.nextToken("\r\n", &reported)) {
    if (!buffer_.makeRoom(reported) || !parseLine(scanLine(line, lines.tokenEnd()))) return false;
  }
  return true;
}

bool MicroDVDParser::parseLine(const ScannedLine& scanned) {
  if (scanned.count == 2) return true;  // no text, nothing to show
  if (scanned.count != 3) return false;
  const std::string_view original(scanned.text, scanned.textLength);
  char* text = buffer_.hold(original);
  const HeaderReading header = rate_.take(scanned, text);
  if (header.rate) {
    statedNumerator_ = header.rate->numerator;
    statedDenominator_ = header.rate->denominator;
  }
  if (header.isHeader) return true;
  breakLines(text, original.size());
  addEntry(scanned, {text, original.size()});
  return true;
}

void MicroDVDParser::addEntry(const ScannedLine& line, std::string_view text) {
  const StyledText styled = translateStyleCodes(text);
  const auto size = static_cast<std::uint32_t>(styled.size());
  // With a NUL behind the text, for the log; the entry's size does not count it.
  std::unique_ptr<unsigned char[]> copy(new unsigned char[std::size_t{size} + 1]);
  styled.copyTo(reinterpret_cast<char*>(copy.get()));
  copy[size] = 0;
  logEntry(entries_.add(std::move(copy), size, frameToMilliseconds(line.firstFrame, rate()),
                        frameToMilliseconds(line.lastFrame, rate())));
}

}  // namespace Ombe
