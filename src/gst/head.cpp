#include "gst/head.h"

#include <algorithm>
#include <string>

#include "host/check/fitted_times.h"
#include "microdvd/lines/line_scan.h"
#include "microdvd/lines/text_tokenizer.h"

namespace Ombe {
namespace {

constexpr std::size_t kHeadSize = 1024;  // bytes that tell

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

bool beginsAsMicroDVD(std::string_view head) {
  std::string text = inAscii(head);
  const char* line = TextTokenizer(text.data()).nextToken("\r\n", nullptr);
  return line != nullptr && scanLine(line).count >= 2;
}

/// What there is of the head. Peeking at more bytes than a stream has gives none, and its length
/// may be unknown, so small sizes are tried one by one.
std::string_view peekHead(GstTypeFind* find) {
  guint64 size = gst_type_find_get_length(find);
  size = size == 0 ? kHeadSize : std::min<guint64>(size, kHeadSize);
  for (; size > 0; size = size > 128 ? size / 2 : size - 1) {
    const guint8* bytes = gst_type_find_peek(find, 0, static_cast<guint>(size));
    if (bytes != nullptr) return {reinterpret_cast<const char*>(bytes), size};
  }
  return {};
}

void findMicroDVD(GstTypeFind* find, gpointer /*data*/) {
  if (!beginsAsMicroDVD(peekHead(find))) return;
  gst_type_find_suggest_empty_simple(find, GST_TYPE_FIND_MAXIMUM, kMicroDVDCaps);
}

}  // namespace

gboolean registerTypefinder(GstPlugin* plugin) {
  GstCaps* caps = gst_caps_from_string(kMicroDVDCaps);
  // The stock parser's is marginal and says application/x-subtitle with certainty.
  const gboolean done = gst_type_find_register(plugin, "ombemicrodvd", GST_RANK_MARGINAL + 1,
                                               findMicroDVD, "sub,txt", caps, nullptr, nullptr);
  gst_caps_unref(caps);
  return done;
}

bool statesFrameRate(std::string_view head) { return statedRate(inAscii(head)).isSet(); }

}  // namespace Ombe
