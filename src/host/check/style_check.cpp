#include "host/check/style_check.h"

#include <string_view>

#include "microdvd/lines/style_codes.h"

namespace Ombe {
namespace {

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

/// The first "{letter:...}" at or behind `from`; empty when there is none.
std::string_view findCode(std::string_view text, std::size_t from) {
  for (std::size_t at = text.find('{', from); at != std::string_view::npos;
       at = text.find('{', at + 1)) {
    const std::string_view rest = text.substr(at);
    if (rest.size() < 4 || !isLetter(rest[1]) || rest[2] != ':') continue;
    const std::size_t end = rest.find('}');
    if (end != std::string_view::npos) return rest.substr(0, end + 1);
  }
  return {};
}

std::string reasonOf(std::string_view code, bool isFirst) {
  const char letter = static_cast<char>(code[1] | 0x20);
  if (letter != 'y' && letter != 'c') return "no such code is translated";
  if (!isFirst) return "only one code, at the very start, is translated";
  return letter == 'y' ? "it may hold two letters at most"
                       : "a colour is written {c:$ and six digits}";
}

}  // namespace

void checkStyle(const std::string& text, std::uint64_t number, const std::string& line,
                Findings& findings) {
  const StyledText styled = translateStyleCodes(text);
  const bool isStart = styled.body.size() == text.size();
  std::size_t from = 0;
  for (auto code = findCode(styled.body, from); !code.empty(); code = findCode(styled.body, from)) {
    const auto at = static_cast<std::size_t>(code.data() - styled.body.data());
    findings.add({Severity::kWarning, "style-code", number,
                  std::string(code) + " is shown as text: " + reasonOf(code, isStart && at == 0),
                  line});
    from = at + code.size();
  }
  if (styled.body.find("\n/") != std::string_view::npos) {
    findings.add({Severity::kWarning, "slash", number,
                  "the slash of a further line is shown: the one at the start is for all", line});
  }
}

}  // namespace Ombe
