// Stands in for the converter library: its name, its functions less the one that OMBE_WITHOUT_...
// leaves out. Swaps the case of letters. The code page says what fails: "none" has no converter,
// "unsound" one with an error, "in2" and "out0" break off after so many characters on the way to
// UTF-16 and on the way back. For one thread.
#include <unicode/ucnv.h>

#include <string>

extern "C" {
__attribute__((visibility("default"))) int openConverters = 0;
}

namespace {

std::string codePage;  // of the conversion under way

template <typename From, typename To>
void copy(const From* source, const From* end, To** target, int difference, const char* direction,
          UErrorCode* error) {
  if (codePage.starts_with(direction)) {
    end = source + (codePage.back() - '0');
    *error = U_TRUNCATED_CHAR_FOUND;
  }
  while (source != end) *(*target)++ = static_cast<To>(*source++ ^ difference);
}

}  // namespace

#ifndef OMBE_WITHOUT_OPEN
UConverter* ucnv_open(const char* name, UErrorCode* error) {
  if (name != std::string("utf8")) codePage = name;
  if (codePage == "none" || codePage == "unsound") *error = U_FILE_ACCESS_ERROR;
  if (codePage == "none") return nullptr;
  ++openConverters;
  return reinterpret_cast<UConverter*>(&openConverters);
}
#endif

#ifndef OMBE_WITHOUT_CLOSE
void ucnv_close(UConverter* /*converter*/) { --openConverters; }
#endif

#ifndef OMBE_WITHOUT_TOUNICODE
void ucnv_toUnicode(UConverter* /*converter*/, UChar** target, const UChar* /*targetLimit*/,
                    const char** source, const char* sourceLimit, int32_t* /*offsets*/,
                    UBool /*flush*/, UErrorCode* error) {
  copy(*source, sourceLimit, target, 0x20, "in", error);
}
#endif

#ifndef OMBE_WITHOUT_FROMUNICODE
void ucnv_fromUnicode(UConverter* /*converter*/, char** target, const char* /*targetLimit*/,
                      const UChar** source, const UChar* sourceLimit, int32_t* /*offsets*/,
                      UBool /*flush*/, UErrorCode* error) {
  copy(*source, sourceLimit, target, 0, "out", error);
}
#endif
