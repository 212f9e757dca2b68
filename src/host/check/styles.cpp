// Style codes that nobody translates.
#include "host/check/passes.h"
#include "microdvd/lines/style_codes.h"

namespace Ombe {
namespace {

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

/// Where the first "{letter:...}" begins.
std::size_t findCode(std::string_view text) {
  std::size_t at = text.find('{');
  for (; at != std::string_view::npos; at = text.find('{', at + 1)) {
    const std::string_view rest = text.substr(at);
    if (rest.size() < 4 || !isLetter(rest[1]) || rest[2] != ':') continue;
    // No later one is closed if this is not.
    return rest.find('}') == std::string_view::npos ? std::string_view::npos : at;
  }
  return at;
}

Kind kindOf(char letter, bool isFirst) {
  const char lowered = static_cast<char>(letter | 0x20);
  if (lowered != 'y' && lowered != 'c') return Kind::kUnknownStyle;
  if (!isFirst) return Kind::kLateStyle;
  return lowered == 'y' ? Kind::kLongStyle : Kind::kShortColor;
}

}  // namespace

void checkStyle(const TextLine& line, std::string_view text, Findings& findings) {
  const std::string_view body = translateStyleCodes(text).body;
  if (const std::size_t at = findCode(body); at != std::string_view::npos) {
    const bool isFirst = at == 0 && body.size() == text.size();
    const auto from = static_cast<std::uint32_t>(body.data() + at - line.text.data());
    findings.add({kindOf(body[at + 1], isFirst), line.number, line.at, from});
  }
  if (body.find("|/") != std::string_view::npos) {
    findings.add({Kind::kSlash, line.number, line.at});
  }
}

bool hasColor(std::string_view text) {
  return translateStyleCodes(text).opening.text().starts_with("<font");
}

}  // namespace Ombe
