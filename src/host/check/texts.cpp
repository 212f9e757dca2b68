#include "host/check/passes.h"
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

std::string codePageAdvice(const std::vector<std::string>& likely) {
  if (likely.empty()) return "name the code page with --code-page";
  std::string advice = "try --code-page " + likely.front();
  for (std::size_t i = 1; i < likely.size(); ++i) {
    advice.append(i + 1 == likely.size() ? " or " : ", ").append(likely[i]);
  }
  return advice;
}

TextCheck::TextCheck(const std::string& codePage, Findings& findings)
    : findings_(findings), codePage_(codePage) {
  if (!codePage.empty()) reader_ = std::make_unique<CodePageReader>(codePage);
}

void TextCheck::take(const TextLine& text) {
  const bool isGarbled = garbled_.take(text.text);
  if (reader_ != nullptr) convert(text);
  if (isGarbled && garbled_.count() == 1) garbledLine_ = text;
  if (!isGarbled && nonAsciiLine_.number == 0 && !isAscii(text.text)) nonAsciiLine_ = text;
}

void TextCheck::convert(const TextLine& text) {
  const std::optional<std::string> converted = reader_->read(text.text);
  const auto bars = [](std::string_view in) { return std::count(in.begin(), in.end(), '|'); };
  if (!converted || holdsUnused(*converted)) {
    findings_.add({Kind::kNoCharacters, text.number, text.at}, codePage_);
  } else if (bars(text.text) > bars(*converted)) {
    findings_.add({Kind::kBrokenCharacter, text.number, text.at});
  } else if (*converted != text.text && nextUtf8Piece(*converted).length == converted->size()) {
    findings_.add({Kind::kSingleCharacter, text.number, text.at});
  }
}

std::vector<std::string> TextCheck::finish() {
  if (garbled_.count() == 0) {
    if (reader_ != nullptr && nonAsciiLine_.number != 0 && !reader_->isUtf8()) {
      findings_.add({Kind::kIsUtf8, nonAsciiLine_.number, nonAsciiLine_.at}, codePage_);
    }
    return {};
  }
  if (reader_ != nullptr) return {};
  std::vector<std::string> likely = garbled_.likelyCodePages();
  const std::size_t others = garbled_.count() - 1;
  findings_.add({Kind::kNotUtf8, garbledLine_.number},
                (others == 0 ? "" : " (and " + std::to_string(others) + " more lines)") + ": " +
                    codePageAdvice(likely));
  return likely;
}

}  // namespace Ombe
