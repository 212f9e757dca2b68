#include "host/check/text_encoding_check.h"

#include <optional>

#include "host/text/utf8_scan.h"

namespace Ombe {
namespace {

/// U+0080 to U+009F, which is what converters make of bytes that a code page leaves unused.
bool holdsUnused(std::string_view text) {
  std::size_t at = text.find('\xC2');
  for (; at != std::string_view::npos; at = text.find('\xC2', at + 2)) {
    // The text is well formed, so a byte follows.
    if (static_cast<unsigned char>(text[at + 1]) < 0xA0) return true;
  }
  return false;
}

}  // namespace

TextEncodingCheck::TextEncodingCheck(const std::string& codePage, Findings& findings)
    : codePage_(codePage), findings_(findings) {
  if (!codePage.empty()) reader_ = std::make_unique<CodePageReader>(codePage);
}

void TextEncodingCheck::take(std::string_view text, std::uint64_t line) {
  if (reader_ != nullptr) return convert(text, line);
  if (garbled_.take(text) && garbled_.count() == 1) garbledLine_ = line;
}

void TextEncodingCheck::convert(std::string_view text, std::uint64_t line) {
  const std::optional<std::string> converted = reader_->read(text);
  if (!converted || holdsUnused(*converted)) {
    findings_.add({Severity::kWarning, "code-page", line,
                   "holds bytes that are no characters of " + codePage_, std::string(text)});
  } else if (*converted != text && nextUtf8Piece(*converted).length == converted->size()) {
    findings_.add({Severity::kWarning, "code-page", line,
                   "is one character alone, which is not converted", *converted});
  }
}

void TextEncodingCheck::finish() {
  const std::size_t count = garbled_.count();
  if (count == 0) return;
  const std::string others =
      count == 1 ? "" : " (and " + std::to_string(count - 1) + " more lines)";
  findings_.add({Severity::kWarning,
                 "not-utf-8",
                 garbledLine_,
                 "not UTF-8" + others + ": " + codePageAdvice(garbled_.likelyCodePages()),
                 {}});
}

}  // namespace Ombe
