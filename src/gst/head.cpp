#include "gst/head.h"

#include <string>

#include "host/check/fitted_times.h"
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

}  // namespace

bool beginsAsMicroDVD(std::string_view head) {
  std::string text = inAscii(head);
  const char* line = TextTokenizer(text.data()).nextToken("\r\n", nullptr);
  return line != nullptr && scanLine(line).count >= 2;
}

bool statesFrameRate(std::string_view head) { return statedRate(inAscii(head)).isSet(); }

}  // namespace Ombe
