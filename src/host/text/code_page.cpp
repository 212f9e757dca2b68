#include "host/text/code_page.h"

#include <unicode/ucnv.h>
#include <unicode/ustring.h>

#include <array>
#include <cstdint>
#include <limits>
#include <stdexcept>

#include "host/text/icu_function.h"

namespace Ombe {
bool isKnownCodePage(const std::string& name) {
  if (name.empty()) return true;
  UErrorCode status = U_ZERO_ERROR;
  UConverter* converter = OMBE_ICU("uc", ucnv_open)(name.c_str(), &status);
  OMBE_ICU("uc", ucnv_close)(converter);
  return U_SUCCESS(status);
}

void CodePageReader::Close::operator()(UConverter* converter) const {
  OMBE_ICU("uc", ucnv_close)(converter);
}

CodePageReader::CodePageReader(const std::string& name, Unreadable unreadable) {
  UErrorCode status = U_ZERO_ERROR;
  converter_.reset(OMBE_ICU("uc", ucnv_open)(name.c_str(), &status));
  OMBE_ICU("uc", ucnv_setToUCallBack)
  (converter_.get(),
   unreadable == Unreadable::kStop ? OMBE_ICU("uc", UCNV_TO_U_CALLBACK_STOP)
                                   : OMBE_ICU("uc", UCNV_TO_U_CALLBACK_SUBSTITUTE),
   nullptr, nullptr, nullptr, &status);
  if (U_FAILURE(status)) throw std::invalid_argument("unknown code page '" + name + "'");
}

bool CodePageReader::isUtf8() const {
  return OMBE_ICU("uc", ucnv_getType)(converter_.get()) == UCNV_UTF8;
}

template <typename Take>
bool CodePageReader::convert(std::string_view text, const Take& take) {
  std::array<char16_t, 1024> units;
  const char* at = text.data();
  UErrorCode status = U_BUFFER_OVERFLOW_ERROR;
  OMBE_ICU("uc", ucnv_resetToUnicode)(converter_.get());
  while (status == U_BUFFER_OVERFLOW_ERROR) {
    status = U_ZERO_ERROR;
    char16_t* end = units.data();
    OMBE_ICU("uc", ucnv_toUnicode)
    (converter_.get(), &end, units.data() + units.size(), &at, text.data() + text.size(), nullptr,
     true, &status);
    take(std::u16string_view(units.data(), static_cast<std::size_t>(end - units.data())));
  }
  return U_SUCCESS(status);
}

bool CodePageReader::reads(std::string_view text) {
  return convert(text, [](std::u16string_view) {});
}

std::u16string CodePageReader::units(std::string_view text) {
  std::u16string units;
  convert(text, [&units](std::u16string_view piece) { units += piece; });
  return units;
}

std::optional<std::string> CodePageReader::read(std::string_view text) {
  constexpr std::size_t kLargest = std::numeric_limits<std::int32_t>::max() / 3;
  std::u16string units;
  if (!convert(text, [&units](std::u16string_view piece) { units += piece; })) return {};
  if (units.size() > kLargest) return {};
  std::string out(units.size() * 3, '\0');
  std::int32_t bytes = 0;
  UErrorCode status = U_ZERO_ERROR;
  OMBE_ICU("uc", u_strToUTF8)
  (out.data(), static_cast<std::int32_t>(out.size()), &bytes, units.data(),
   static_cast<std::int32_t>(units.size()), &status);
  if (U_FAILURE(status)) return {};
  out.resize(static_cast<std::size_t>(bytes));
  return out;
}

}  // namespace Ombe
