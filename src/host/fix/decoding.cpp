#include "host/fix/decoding.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "host/text/code_page.h"
#include "host/text/utf8_scan.h"

namespace Ombe {
namespace {

constexpr std::size_t kSample = 4096;  // bytes that tell
constexpr char kUtf8[] = "UTF-8";

/// "UTF-16LE" or "UTF-16BE" where every other byte of the start is often zero and the others hardly
/// ever: digits, braces and line ends are ASCII in any language. Empty for no such text.
std::string wideCodePage(std::string_view bytes) {
  const std::size_t size = std::min(bytes.size(), kSample);
  std::size_t zeros[2] = {0, 0};
  for (std::size_t i = 0; i < size; ++i)
    if (bytes[i] == '\0') ++zeros[i % 2];
  const auto isMost = [&](std::size_t some, std::size_t others) {
    return some * 10 >= size / 2 && some >= 4 && others * 16 <= some;
  };
  if (isMost(zeros[1], zeros[0])) return "UTF-16LE";
  if (isMost(zeros[0], zeros[1])) return "UTF-16BE";
  return {};
}

std::string decodedWith(const std::string& codePage, std::string_view bytes, bool& isLossy) {
  auto text = CodePageReader(codePage).read(bytes);
  isLossy = !text;
  if (isLossy) text = CodePageReader(codePage, CodePageReader::Unreadable::kReplace).read(bytes);
  if (!text) throw std::length_error("is too large to be decoded");
  return std::move(*text);
}

/// Of bytes that say nothing of it themselves; empty where it is not known.
std::string unstatedCodePage(std::string_view bytes, const std::string& guess) {
  std::string wide = wideCodePage(bytes);
  if (!wide.empty()) return wide;
  return isUtf8(bytes) ? kUtf8 : guess;
}

}  // namespace

DecodedText decodeBytes(std::string bytes, const std::string& codePage, const std::string& guess) {
  DecodedText result;
  result.codePage = codePage.empty() ? unstatedCodePage(bytes, guess) : codePage;
  if (codePage.empty() && result.codePage == kUtf8) {
    result.text = std::move(bytes);
  } else if (!result.codePage.empty()) {
    result.text = decodedWith(result.codePage, bytes, result.isLossy);
  }
  constexpr std::string_view kSignature = "\uFEFF";
  if (result.text.starts_with(kSignature)) result.text.erase(0, kSignature.size());
  return result;
}

}  // namespace Ombe
