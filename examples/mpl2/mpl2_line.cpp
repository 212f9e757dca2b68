#include "mpl2/mpl2_line.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace Ombe {
namespace {

constexpr std::uint32_t kMsPerUnit = 100;

/// Takes "[NUMBER]", a number of tenths of a second, off the line.
bool takeTime(std::string_view& line, std::uint32_t& ms) {
  if (line.empty() || line.front() != '[') return false;
  const char* const end = line.data() + line.size();
  std::uint32_t units = 0;
  const auto [behind, error] = std::from_chars(line.data() + 1, end, units);
  if (error != std::errc() || behind == end || *behind != ']') return false;
  if (units > std::numeric_limits<std::uint32_t>::max() / kMsPerUnit) return false;
  ms = units * kMsPerUnit;
  line.remove_prefix(static_cast<std::size_t>(behind + 1 - line.data()));
  return true;
}

/// The lines of one subtitle, with the style mark in front of each turned into tags.
std::string styled(std::string_view text) {
  std::string out;
  for (bool isFirst = true;; isFirst = false) {
    const std::string_view part = text.substr(0, text.find('|'));
    const bool isItalic = part.starts_with('/');
    if (!isFirst) out += '\n';
    out.append(isItalic ? "<i>" : "").append(part.substr(isItalic ? 1 : 0));
    if (isItalic) out += "</i>";
    if (part.size() == text.size()) return out;
    text.remove_prefix(part.size() + 1);
  }
}

}  // namespace

std::optional<Mpl2Line> parseMpl2Line(std::string_view line) {
  Mpl2Line parsed;
  if (!takeTime(line, parsed.startMs) || !takeTime(line, parsed.endMs)) return std::nullopt;
  parsed.text = styled(line);
  return parsed;
}

std::string_view takeLine(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of("\r\n"), text.size()));
  const std::string_view line = text.substr(0, text.find_first_of("\r\n"));
  text.remove_prefix(line.size());
  return line;
}

}  // namespace Ombe
