// Headers that state another frame rate.
#include "host/fix/draft.h"
#include "host/fix/repair.h"
#include "host/fix/source_lines.h"

namespace Ombe {
namespace {

/// "25", "23.976" where the denominator is a power of ten, else "24000/1001".
std::string rateText(FrameRate rate) {
  std::string digits = std::to_string(rate.numerator);
  std::uint64_t power = 1;
  std::size_t places = 0;
  for (; power < rate.denominator; power *= 10) ++places;
  if (power != rate.denominator) return digits + "/" + std::to_string(rate.denominator);
  if (places == 0) return digits;
  if (digits.size() <= places) digits.insert(0, places + 1 - digits.size(), '0');
  return digits.insert(digits.size() - places, 1, '.');
}

}  // namespace

std::string withHeader(const std::string& text, FrameRate rate) {
  std::string result = "{1}{1}" + rateText(rate) + "\n";
  const std::size_t end = text.find('\0');  // nothing is read behind it
  const SourceLines source(text.substr(0, end), SourceLines::Controls::kKeep);
  RateInForce rates;
  for (const SourceLine& line : source.lines()) {
    const auto head = readHead(line.text);
    if (head && takeLine(rates, head->first, head->last, head->text)) continue;
    result.append(line.text).append("\n");
  }
  if (end == std::string::npos) return result;
  result.pop_back();
  return result.append(text, end);
}

}  // namespace Ombe
