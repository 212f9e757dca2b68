#include "host/text/garbled_texts.h"

#include <unicode/ucsdet.h>

#include <algorithm>
#include <cstdint>
#include <memory>

#include "host/text/code_page.h"
#include "host/text/icu_function.h"
#include "host/text/utf8_scan.h"

namespace Ombe {
namespace {

constexpr std::size_t kSuggestions = 3;
constexpr std::int32_t kLeastConfidence = 10;              // of 100
constexpr std::size_t kSampleSize = std::size_t{1} << 16;  // bytes; more do not sharpen a guess

struct CloseDetector {
  void operator()(UCharsetDetector* detector) const { OMBE_ICU("i18n", ucsdet_close)(detector); }
};

/// Whole lines, since half a character would speak against its code page.
std::string_view sampleOf(std::string_view text) {
  if (text.size() <= kSampleSize) return text;
  const std::size_t lines = text.rfind('\n', kSampleSize - 1) + 1;
  return text.substr(0, lines != 0 ? lines : kSampleSize);
}

/// The superset, where the detector answers the smaller page and people use the larger.
std::string usualName(const std::string& name) {
  return name == "ISO-8859-1" ? "windows-1252" : name;
}

/// The detector also names pages that no converter has, such as IBM420_ltr. The wide ones are out:
/// the text has been read by lines of bytes.
bool isUsable(const std::string& name, std::string_view text) {
  return !name.starts_with("UTF-") && isKnownCodePage(name) && CodePageReader(name).reads(text);
}

}  // namespace

std::vector<std::string> likelyCodePages(std::string_view text) {
  std::vector<std::string> names;
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<UCharsetDetector, CloseDetector> detector(
      OMBE_ICU("i18n", ucsdet_open)(&status));
  text = sampleOf(text);
  OMBE_ICU("i18n", ucsdet_setText)
  (detector.get(), text.data(), static_cast<std::int32_t>(text.size()), &status);
  std::int32_t count = 0;
  const UCharsetMatch** matches =
      OMBE_ICU("i18n", ucsdet_detectAll)(detector.get(), &count, &status);
  for (std::int32_t i = 0; U_SUCCESS(status) && i < count && names.size() < kSuggestions; ++i) {
    if (OMBE_ICU("i18n", ucsdet_getConfidence)(matches[i], &status) < kLeastConfidence) break;
    const std::string name = usualName(OMBE_ICU("i18n", ucsdet_getName)(matches[i], &status));
    const bool isNew = std::find(names.begin(), names.end(), name) == names.end();
    if (isNew && isUsable(name, text)) names.push_back(name);
  }
  return names;
}

std::string codePageAdvice(const std::vector<std::string>& likely) {
  if (likely.empty()) return "name the code page with --code-page";
  std::string advice = "try --code-page " + likely.front();
  for (std::size_t i = 1; i < likely.size(); ++i) {
    advice.append(i + 1 == likely.size() ? " or " : ", ").append(likely[i]);
  }
  return advice;
}

bool GarbledTexts::take(std::string_view text) {
  if (isUtf8(text)) return false;
  ++count_;
  if (sample_.size() < kSampleSize) sample_.append(sampleOf(text)).append("\n");
  return true;
}

std::vector<std::string> GarbledTexts::likelyCodePages() const {
  return count_ == 0 ? std::vector<std::string>() : Ombe::likelyCodePages(sample_);
}

}  // namespace Ombe
