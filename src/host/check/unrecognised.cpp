// Files that are something else, or that the plug-in does not look at long enough.
#include "host/check/check.h"
#include "host/check/passes.h"
#include "ombe_core/kelm_string.h"
#include "text/charset.h"

namespace Ombe {
namespace {

using std::string_view_literals::operator""sv;

constexpr std::size_t kHead = 1024;   // bytes that the plug-in recognises a file by
constexpr std::size_t kShortest = 6;  // "{1}{2"

/// No control characters, and ASCII to a good part.
bool readsAsText(std::string_view text) {
  std::size_t characters = 0;
  std::size_t ascii = 0;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < ' ' && c != '\t' && c != '\n' && c != '\r') return false;
    characters += byte < 0x80 || byte >= 0xC0 ? 1 : 0;
    ascii += byte < 0x80 ? 1 : 0;
  }
  return ascii > 0 && ascii >= characters / 4;
}

const unsigned char* unsignedBytes(std::string_view bytes) {
  return reinterpret_cast<const unsigned char*>(bytes.data());
}

/// What the plug-in recognises it by: the head, or the whole text where the head is none.
std::optional<std::string> textToRecognise(std::string_view bytes, const std::string& codePage) {
  if (bytes.size() >= kHead) {
    if (auto head = decodedText(bytes.substr(0, kHead), codePage)) return head;
  }
  return decodedText(bytes, codePage);
}

std::optional<Kind> otherFormat(std::string_view text) {
  const std::string_view head = text.substr(0, kHead);
  if (head.starts_with("WEBVTT")) return Kind::kWebVtt;
  if (head.starts_with("[Script Info]")) return Kind::kSubStation;
  if (head.find(" --> ") != std::string_view::npos) return Kind::kSubRip;
  if (head.find('\0') != std::string_view::npos) return Kind::kBinary;
  return std::nullopt;
}

}  // namespace

std::size_t signatureLength(std::string_view bytes) {
  String ignored;
  return detectTextSignature(unsignedBytes(bytes), static_cast<std::uint32_t>(bytes.size()),
                             ignored);
}

std::optional<std::string> decodedText(std::string_view bytes, const std::string& codePage) {
  const auto size = static_cast<std::uint32_t>(bytes.size());
  String name(codePage.c_str());
  const std::uint32_t skipped = detectTextSignature(unsignedBytes(bytes), size, name);
  const unsigned char* start = unsignedBytes(bytes) + skipped;
  ByteString out;
  const bool isDecoded = name.empty() ? decodeText(nullptr, start, size - skipped, out)
                                      : convertAndCheck(name, start, size - skipped, out);
  if (!isDecoded) return std::nullopt;
  return std::string(view(out));
}

bool isWide(std::string_view bytes) {
  const std::string_view head = bytes.substr(0, std::min(bytes.size(), kHead) / 4 * 4);
  for (const char* name : {"UTF-16LE", "UTF-16BE", "UTF-32LE", "UTF-32BE"}) {
    const auto text = CodePageReader(name).read(head);
    if (text && readsAsText(*text)) return true;
  }
  return false;
}

void explainUnrecognised(std::string_view bytes, const Answer& answer, Findings& findings) {
  const std::string& codePage = answer.codePage;
  const std::string_view raw = bytes.substr(signatureLength(bytes));
  const std::optional<std::string> text = textToRecognise(bytes, codePage);
  const std::string_view seen = text ? std::string_view(*text) : raw;
  if (bytes.empty()) return findings.add({Kind::kEmpty});
  if (bytes.starts_with("\x00\x00\x01\xBA"sv)) return findings.add({Kind::kVobSub});
  if (!answer.hasSignature && !codePage.empty() && firstLineIsMicroDVD(raw)) {
    return findings.add({Kind::kWrongCodePage}, codePage);
  }
  const auto whole = bytes.size() > kHead ? decodedText(bytes, codePage) : std::nullopt;
  if (whole && firstLineIsMicroDVD(*whole)) return findings.add({Kind::kLateStart});
  if (!answer.hasSignature && isWide(bytes)) return findings.add({Kind::kWide});
  if (const auto other = otherFormat(seen)) return findings.add({*other});
  if (seen.find_first_not_of("\r\n") == std::string_view::npos) return findings.add({Kind::kBlank});
  if (raw.size() < kShortest) return findings.add({Kind::kShort});
  if (!text && answer.hasSignature) return findings.add({Kind::kUndecodable}, codePage);
  findings.setText(std::string(seen));
  forEachLine(findings.text(), [&findings](const TextLine& line) {
    const std::string copy(line.text);
    if (!firstLineIsMicroDVD(copy)) findings.add({badLineKind(copy), line.number, line.at});
    return false;
  });
}

std::string looksOf(std::string_view head) {
  Findings findings;
  explainUnrecognised(head, {}, findings);
  for (const Finding& finding : findings.kept()) {
    if (finding.line == 0) return findings.message(finding);
  }
  return {};
}

}  // namespace Ombe
