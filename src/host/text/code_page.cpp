#include "host/text/code_page.h"

#include <unicode/ucnv.h>
#include <unicode/ucsdet.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <limits>
#include <stdexcept>

namespace Ombe {
namespace {

constexpr std::size_t kSuggestions = 3;
constexpr std::int32_t kLeastConfidence = 10;            // of 100
constexpr std::size_t kLookedAt = std::size_t{1} << 16;  // bytes; more do not sharpen the guess

struct CloseDetector {
  void operator()(UCharsetDetector* detector) const { ucsdet_close(detector); }
};

/// The superset, where the detector answers the smaller page and people use the larger.
std::string usualName(const std::string& name) {
  return name == "ISO-8859-1" ? "windows-1252" : name;
}

}  // namespace

bool isKnownCodePage(const std::string& name) {
  if (name.empty()) return true;
  UErrorCode status = U_ZERO_ERROR;
  UConverter* converter = ucnv_open(name.c_str(), &status);
  ucnv_close(converter);
  return U_SUCCESS(status);
}

std::vector<std::string> likelyCodePages(std::string_view text) {
  std::vector<std::string> names;
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<UCharsetDetector, CloseDetector> detector(ucsdet_open(&status));
  if (text.size() > kLookedAt) {
    // Whole lines, since half a character would speak against its code page.
    const std::size_t lines = text.rfind('\n', kLookedAt - 1) + 1;
    text = text.substr(0, lines != 0 ? lines : kLookedAt);
  }
  ucsdet_setText(detector.get(), text.data(), static_cast<std::int32_t>(text.size()), &status);
  std::int32_t count = 0;
  const UCharsetMatch** matches = ucsdet_detectAll(detector.get(), &count, &status);
  for (std::int32_t i = 0; U_SUCCESS(status) && i < count && names.size() < kSuggestions; ++i) {
    if (ucsdet_getConfidence(matches[i], &status) < kLeastConfidence) break;
    const std::string name = usualName(ucsdet_getName(matches[i], &status));
    // The text has been read by lines of bytes, so it is none of the wide ones.
    if (name.starts_with("UTF-") || std::find(names.begin(), names.end(), name) != names.end()) {
      continue;
    }
    if (CodePageReader(name).read(text)) names.push_back(name);
  }
  return names;
}

void CodePageReader::Close::operator()(UConverter* converter) const { ucnv_close(converter); }

CodePageReader::CodePageReader(const std::string& name, Foreign foreign) {
  UErrorCode status = U_ZERO_ERROR;
  converter_.reset(ucnv_open(name.c_str(), &status));
  if (foreign == Foreign::kRefused) {
    ucnv_setToUCallBack(converter_.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                        &status);
  }
  if (U_FAILURE(status)) throw std::invalid_argument("unknown code page '" + name + "'");
}

std::optional<std::string> CodePageReader::read(std::string_view text) {
  constexpr std::size_t kLargest = std::numeric_limits<std::int32_t>::max() / 4;
  if (text.size() > kLargest) return std::nullopt;
  UErrorCode status = U_ZERO_ERROR;
  units_.resize(text.size() * 2 + 1);  // a byte makes two units at most
  const std::int32_t units =
      ucnv_toUChars(converter_.get(), units_.data(), static_cast<std::int32_t>(units_.size()),
                    text.data(), static_cast<std::int32_t>(text.size()), &status);
  if (U_FAILURE(status)) return std::nullopt;
  std::string out(static_cast<std::size_t>(units) * 3, '\0');
  std::int32_t bytes = 0;
  u_strToUTF8(out.data(), static_cast<std::int32_t>(out.size()), &bytes, units_.data(), units,
              &status);
  if (U_FAILURE(status)) return std::nullopt;
  out.resize(static_cast<std::size_t>(bytes));
  return out;
}

}  // namespace Ombe
