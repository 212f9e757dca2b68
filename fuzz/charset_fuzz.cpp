// From bytes to UTF-8: signatures, conversions, the check on the result; and from a URI to a path.
#include "cost.h"
#include "host/session/host_controller.h"
#include "ombe_core/status.h"
#include "ombe_core/string_tools.h"
#include "ombe_core/subtitle_settings.h"
#include "support.h"
#include "text/charset.h"
#include "text/converter.h"
#include "text/source_path.h"
#include "text/utf8.h"

using namespace Ombe;  // NOLINT(google-build-using-namespace)
using ombe_fuzz::Input;
using ombe_fuzz::require;
using std::string_literals::operator""s;

namespace {

const std::pair<std::string, const char*> kSignatures[] = {  // the longest match counts
    {"\0\0\xFE\xFF"s, "UTF32-BE"},
    {"\xFF\xFE\0\0"s, "UTF32-LE"},
    {"\xFE\xFF", "UTF16-BE"},
    {"\xFF\xFE", "UTF16-LE"},
    {"\xEF\xBB\xBF", "UTF8"},
    {"+/v8", "UTF7"},
    {"+/v9", "UTF7"},
    {"+/v+", "UTF7"},
    {"+/v/", "UTF7"},
    {"\x0E\xFE\xFF", "SCSU"},
    {"\xFB\xEE\x28", "BOCU-1"},
    {"\x84\x31\x95\x33", "GB-18030"}};

void checkSignature(const unsigned char* bytes, std::string_view text) {
  std::pair<std::string, const char*> longest("", "old");
  for (const auto& signature : kSignatures) {
    const bool isLonger = signature.first.size() > longest.first.size();
    if (isLonger && text.starts_with(signature.first)) longest = signature;
  }
  String name("old");
  const std::uint32_t length =
      detectTextSignature(bytes, static_cast<std::uint32_t>(text.size()), name);
  require(length == longest.first.size() && view(name) == longest.second, "the longest signature");
}

void checkDecoding(const std::string& codePage, const unsigned char* bytes, std::string_view text) {
  HostController store;
  store.setValue(codePageSetting(), SettingValue::string(new String(codePage.c_str())));
  ByteString out = toByteString("old");
  const bool done = decodeText(&store, bytes, static_cast<std::uint32_t>(text.size()), out);
  if (!done) return require(view(out) == "old", "a failure leaves the output alone");
  require(isWellFormedUtf8Sequence(out.data(), out.data() + out.length() - 1), "a checked text");
  if (codePage.empty()) return require(view(out) == text, "the bytes as they are");
  require(isWellFormedUtf8(view(out)) && view(out).find('\0') == std::string_view::npos,
          "converted text is UTF-8 without NUL");
  require(convertToUtf8("UTF8", out.data(), out.length()) == view(out), "UTF-8 stays as it is");
  const std::wstring points(bytes, std::find(bytes, bytes + text.size(), 0));
  require(codePage != "ISO-8859-1" || view(out) == StringTools::wstringToBytes(points),
          "Latin bytes are code points");
}

void checkPath(std::string_view text) {
  ByteString out = toByteString("old");
  const bool done = uriToFilePath(toByteString(text), out) == kSuccess;
  require(done || view(out) == "old", "a refusal leaves the output alone");
  const std::string path = "/" + std::string(text.substr(0, text.find('\0')));
  const bool isLocal = uriToFilePath(toByteString("file://" + path), out) == kSuccess;
  require(isLocal == isWellFormedUtf8(path), "every UTF-8 path can be named");
  require(!isLocal || view(out) == path, "the path comes out as it was");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr const char* kCodePages[] = {
      "",     "ISO-8859-1", "windows-1250", "nothing",  "Shift_JIS", "ISO-2022-JP",
      "HZ",   "EUC-TW",     "UTF32-BE",     "UTF32-LE", "UTF16-BE",  "UTF16-LE",
      "UTF8", "UTF7",       "SCSU",         "BOCU-1",   "GB-18030"};
  const ombe_fuzz::CostLimit limit(size, {0.3, 200, 160});
  Input input(data, size);
  const char* codePage = kCodePages[input.number() % std::size(kCodePages)];
  // Without a terminator: none of these may rely on one.
  const std::unique_ptr<unsigned char[]> exact(new unsigned char[input.rest.size()]);
  std::copy(input.rest.begin(), input.rest.end(), exact.get());
  checkSignature(exact.get(), input.rest);
  checkDecoding(codePage, exact.get(), input.rest);
  checkPath(input.rest);
  return 0;
}
