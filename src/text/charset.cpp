#include "text/charset.h"

#include <string_view>

#include "ombe_core/subtitle_settings.h"
#include "text/converter.h"
#include "text/text_settings.h"
#include "text/utf8.h"

namespace Ombe {
namespace {

using std::string_view_literals::operator""sv;

struct Signature {
  std::string_view bytes;
  const char* codePage;
};

/// The first match wins, so UTF-32 stands before the UTF-16 that it begins with. The names are the
/// converter library's.
constexpr Signature kSignatures[] = {
    {"\x00\x00\xFE\xFF"sv, "UTF32-BE"},
    {"\xFF\xFE\x00\x00"sv, "UTF32-LE"},
    {"\xFE\xFF"sv, "UTF16-BE"},
    {"\xFF\xFE"sv, "UTF16-LE"},
    {"\xEF\xBB\xBF"sv, "UTF8"},
    {"+/v8"sv, "UTF7"},
    {"+/v9"sv, "UTF7"},
    {"+/v+"sv, "UTF7"},
    {"+/v/"sv, "UTF7"},
    {"\x0E\xFE\xFF"sv, "SCSU"},
    {"\xFB\xEE\x28"sv, "BOCU-1"},
    {"\x84\x31\x95\x33"sv, "GB-18030"},
};

/// The check on every decoded text. A text of one character does not pass.
bool beginsAsUtf8(const unsigned char* bytes, std::size_t length) {
  return length != 0 && bytes != nullptr && isWellFormedUtf8Sequence(bytes, bytes + (length - 1));
}

}  // namespace

std::uint32_t detectTextSignature(const unsigned char* bytes, std::uint32_t length, String& name) {
  const std::string_view text(reinterpret_cast<const char*>(bytes), length);
  for (const Signature& signature : kSignatures) {
    if (!text.starts_with(signature.bytes)) continue;
    name = signature.codePage;
    return static_cast<std::uint32_t>(signature.bytes.size());
  }
  return 0;
}

bool decodeText(SettingStore* store, const unsigned char* data, std::uint32_t length,
                ByteString& out) {
  const String* codePage = readStringSetting(store, codePageSetting());
  if (codePage != nullptr && !codePage->empty()) {
    return convertAndCheck(*codePage, data, length, out);
  }
  if (!beginsAsUtf8(data, length)) return false;
  out = ByteString(data, length);
  return true;
}

bool convertAndCheck(const String& codePage, const unsigned char* bytes, std::uint32_t length,
                     ByteString& out) {
  const ConvertedText converted = convertText(codePage.c_str(), bytes, length);
  const std::string_view text = converted.view().substr(0, converted.view().find('\0'));
  if (text.size() > ByteString::maximumLength) return false;
  if (!beginsAsUtf8(reinterpret_cast<const unsigned char*>(text.data()), text.size())) return false;
  out = toByteString(text);
  return true;
}

}  // namespace Ombe
