#include "gst/head.h"

#include <string>

#include "microdvd/lines/frame_rate.h"
#include "microdvd/lines/line_scan.h"
#include "microdvd/lines/text_tokenizer.h"

namespace Ombe {
namespace {

/// Signatures in front of texts that go on in ASCII, NUL bytes aside; those of UTF-32 begin or end
/// as those of UTF-16.
constexpr std::string_view kSignatures[] = {
    "\xEF\xBB\xBF", "\xFF\xFE", "\xFE\xFF", "+/v8-",        "+/v8",
    "+/v9",         "+/v+",     "+/v/",     "\x0E\xFE\xFF", "\x84\x31\x95\x33"};

std::string inAscii(std::string_view head) {
  std::string text(head.substr(0, kHeadSize));
  std::erase(text, '\0');
  for (const std::string_view signature : kSignatures) {
    if (text.starts_with(signature)) return text.substr(signature.size());
  }
  return text;
}

HeaderReading readIfHeader(const ScannedLine& line) {
  if (line.firstFrame != 1 || line.lastFrame != 1 || line.textLength >= kHeaderLimit) return {};
  std::string text(line.text, line.textLength);
  return readHeader(text.data());
}

}  // namespace

bool beginsAsMicroDVD(std::string_view head) {
  std::string text = inAscii(head);
  const char* line = TextTokenizer(text.data()).nextToken("\r\n", nullptr);
  return line != nullptr && scanLine(line).count >= 2;
}

bool statesFrameRate(std::string_view head) {
  std::string text = inAscii(head);
  TextTokenizer lines(text.data());
  while (const char* line = lines.nextToken("\r\n", nullptr)) {
    const ScannedLine scanned = scanLine(line);
    if (scanned.count == 2) continue;  // no text, so it is no header and no subtitle
    const HeaderReading reading = scanned.count == 3 ? readIfHeader(scanned) : HeaderReading{};
    if (!reading.isHeader) return false;
    if (reading.rate && reading.rate->isSet()) return true;
  }
  return false;
}

}  // namespace Ombe
