// From a URI to UTF-8 text: paths, files, signatures, conversions, and what failures leave behind.
#include <gmock/gmock.h>

#include <algorithm>
#include <cstring>
#include <tuple>

#include "ombe_core/string_tools.h"
#include "ombe_core/subtitle_settings.h"
#include "support/allocation_faults.h"
#include "support/fakes.h"
#include "text/charset.h"
#include "text/converter.h"
#include "text/file_reader.h"
#include "text/memory_buffer.h"
#include "text/source_path.h"
#include "text/text_settings.h"
#include "text/ucnv_library.h"
#include "text/utf8.h"

namespace Ombe {
namespace {

using KMDSOLD::UCNVLibrary;
using ombe_test::FakeHost;
using std::string_literals::operator""s;

const unsigned char* bytesOf(const std::string& text) {
  return reinterpret_cast<const unsigned char*>(text.data());
}

std::uint32_t sizeOf(const std::string& text) { return static_cast<std::uint32_t>(text.size()); }

std::string pathOf(const std::string& uri) {
  ByteString out = toByteString("unchanged");
  const Status status = uriToFilePath(toByteString(uri), out);
  EXPECT_EQ(status, view(out) == "unchanged" ? kNotALocalFile : kSuccess);
  return std::string(view(out));
}

TEST(SourcePath, IsThePathOfALocalFileWithEveryCharacterAsItWas) {
  const std::vector<std::string> rows = {"FiLe:///a b.sub", "/a b.sub", "file:a",    "a",
                                         "file://host/a",   "/a",       "/a\0\xFF"s, "/a"};
  for (std::size_t i = 0; i < rows.size(); i += 2) EXPECT_EQ(pathOf(rows[i]), rows[i + 1]);
  for (const char* path : {"/m/a.sub", "a", "/%20%zz%00%", "/\xC5\xBD\xF0\x9F\x8E\xAC"}) {
    EXPECT_EQ(pathOf(path), path);
  }
  for (char c = 1; c > 0; ++c) EXPECT_EQ(pathOf("file:///x"s + c + "y"), "/x"s + c + "y") << int{c};
  for (const char* uri :
       {"http://host/a", "files:///a", "file:///\xFF", "/a\xC5", "/\xED\xA0\x80", "",
        "file:", "file://host", "1:2", "file://host:port/a", "http\xFF://host/"}) {
    EXPECT_EQ(pathOf(uri), "unchanged") << uri;
  }
}

TEST(Utf8, IsJudgedAsADecoderJudgesIt) {
  constexpr unsigned char kTails[] = {0x41, 0x80, 0xBF, 0xC0};
  const auto isEscape = [](wchar_t point) { return point >= 0xDC00 && point <= 0xDCFF; };
  for (unsigned i = 0; i < 0x10000 * 16; ++i) {
    const auto byte = [i](int shift) { return static_cast<unsigned char>(i >> shift); };
    std::vector<unsigned char> text = {byte(12), byte(4), kTails[byte(2) & 3], kTails[i & 3]};
    text.resize(8, '.');
    const std::wstring points = StringTools::uStringToWstring({text.data(), text.size()});
    const bool whole = std::none_of(points.begin(), points.end(), isEscape);
    ASSERT_EQ(isWellFormedUtf8({reinterpret_cast<char*>(text.data()), 8}), whole) << i;
    ASSERT_EQ(isWellFormedUtf8Sequence(text.data(), text.data() + 7), !isEscape(points[0])) << i;
    text.resize(StringTools::wstringToBytes(points.substr(0, 1)).size());  // this character alone
    ASSERT_FALSE(isWellFormedUtf8Sequence(text.data(), text.data() + text.size() - 1)) << i;
  }
  EXPECT_FALSE(isWellFormedUtf8Sequence(nullptr, nullptr));
}

std::string decoded(SettingStore* store, const std::string& text) {
  ByteString out = toByteString("unchanged");
  const bool done = decodeText(store, bytesOf(text), sizeOf(text), out);
  EXPECT_EQ(done, view(out) != "unchanged");
  return std::string(view(out));
}

TEST(Signature, NamesTheCodePageThatDecodesTheRest) {
  const std::vector<std::string> rows = {
      "UTF32-BE", "\0\0\xFE\xFF"s, "UTF32-LE", "\xFF\xFE\0\0"s, "UTF16-BE", "\xFE\xFF",
      "UTF16-LE", "\xFF\xFE",      "UTF8",     "\xEF\xBB\xBF",  "UTF7",     "+/v8",
      "UTF7",     "+/v9",          "UTF7",     "+/v+",          "UTF7",     "+/v/",
      "SCSU",     "\x0E\xFE\xFF",  "BOCU-1",   "\xFB\xEE\x28",  "GB-18030", "\x84\x31\x95\x33"};
  for (std::size_t i = 0; i < rows.size(); i += 2) {
    char* encoded = nullptr;
    std::size_t length = 0;
    ASSERT_TRUE(fromUtf16(rows[i].c_str(), u"\u017Do", 2, &encoded, &length));
    const std::unique_ptr<char[]> owner(encoded);
    EXPECT_EQ(encoded[length], 0);
    const std::string rest(encoded, length), text = rows[i + 1] + rest;
    String name;
    ASSERT_EQ(detectTextSignature(bytesOf(text), sizeOf(text), name), rows[i + 1].size());
    EXPECT_EQ(view(name), rows[i]);
    FakeHost store;
    store.settings.setString("CodePage", "Name", name.c_str());
    EXPECT_EQ(decoded(&store, rest), "\xC5\xBDo") << rows[i];
    EXPECT_EQ(convertToUtf8(rows[i].c_str(), bytesOf(rest), sizeOf(rest)), "\xC5\xBDo");
  }
  for (const char* text :
       {"+/vA", "+/v", "\xEF\xBB", "\xFF", "\xFE", "\x84\x31\x95", "\xFB\xEE", ""}) {
    const std::vector<unsigned char> exact(text, text + std::strlen(text));
    String name = "old";
    EXPECT_EQ(detectTextSignature(exact.data(), sizeOf(text), name), 0) << text;
    EXPECT_EQ(view(name), "old");
  }
}

TEST(Decoding, UsesTheStoredCodePageAndChecksTheFirstCharacter) {
  const std::vector<std::string> rows = {// code page, text, expected
                                         "",          "AB\xFF",
                                         "AB\xFF",    "",
                                         "A\0B"s,     "A\0B"s,
                                         "",          "A",
                                         "unchanged", "",
                                         "\xC0\x80.", "unchanged",
                                         "CP1250",    "\x8Eo",
                                         "\xC5\xBDo", "CP1250",
                                         "A",         "unchanged",
                                         "CP1250",    "",
                                         "unchanged", "none such",
                                         "AB",        "unchanged",
                                         "UTF16-LE",  "A\0B\0\0\0C\0"s,
                                         "AB",        "UTF8",
                                         "A\xC5",     "A\xEF\xBF\xBD"};
  FakeHost store;
  for (std::size_t i = 0; i < rows.size(); i += 3) {
    store.settings.setString("CodePage", "Name", rows[i].c_str());
    EXPECT_EQ(decoded(&store, rows[i + 1]), rows[i + 2]) << i;
  }
  for (const auto& value : {SettingValue::string(nullptr), SettingValue::boolean(true)}) {
    store.setValue(codePageSetting(), value);
    EXPECT_EQ(readStringSetting(&store, codePageSetting()) != nullptr, value.isString());
    EXPECT_EQ(decoded(&store, "AB\x8E"), "AB\x8E");
  }
  EXPECT_EQ(decoded(nullptr, "AB"), "AB");
  EXPECT_EQ(decoded(nullptr, ""), "unchanged");
  ByteString out;
  EXPECT_FALSE(convertAndCheck(String(), bytesOf("AB"), 2, out));
}

TEST(Conversion, FailsSoftlyWithoutALibraryAFunctionOrACodePage) {
  const UCNVLibrary noLibrary("no-such-library.so", "_72");
  const UCNVLibrary noFunction("libicuuc.so." + std::to_string(U_ICU_VERSION_MAJOR_NUM), "_1");
  for (const UCNVLibrary* library : {&noLibrary, &noFunction}) {
    UErrorCode errors[3] = {};
    EXPECT_EQ(library->open("UTF8", errors), nullptr);
    EXPECT_EQ(library->open("UTF8", nullptr), nullptr);
    library->toUnicode({}, {}, {}, {}, {}, {}, true, errors + 1);
    library->fromUnicode({}, {}, {}, {}, {}, {}, true, errors + 2);
    library->close(nullptr);
    EXPECT_THAT(errors, testing::Each(5));
  }
  char16_t* units = nullptr;
  std::size_t count = 7;
  EXPECT_FALSE(toUtf16("UTF8", bytesOf("AB"), 0, &units, &count));
  EXPECT_FALSE(toUtf16("", bytesOf("AB"), 2, &units, &count));
  EXPECT_EQ(count, 7);  // not even begun
  EXPECT_FALSE(toUtf16("no such code page", bytesOf("AB"), 2, &units, &count));
  EXPECT_EQ(count, 0);
  EXPECT_EQ(convertToUtf8("no such code page", bytesOf("AB"), 2), "");
  char* text = nullptr;
  EXPECT_FALSE(fromUtf16("UTF8", u"AB", ~std::size_t{0} / 4 + 1, &text, &count)) << "room wraps";
}

TEST(MemoryBufferTest, IsClearedOnDemandAndUsableAfterMemoryWasShort) {
  ktl::MemoryBuffer<char> buffer(2, true);
  buffer.data()[1] = 'x';
  buffer.resize(2, false);
  EXPECT_EQ(std::string(buffer.data(), 2), "\0x"s);
  buffer.resize(2, true);
  EXPECT_EQ(std::string(buffer.data(), 2), "\0\0"s);
  const ombe_test::AllocationFault fault(1, ombe_test::FaultMode::kOnce);
  for (const bool isNull : {true, false}) {
    buffer.resize(4, true);
    EXPECT_EQ(buffer.isNull(), isNull);
  }
}

TEST(Reading, StripsTheSignatureAndKeepsTheNameWithoutOne) {
  const std::tuple<std::string, std::string, std::string, std::string> cases[] = {
      {"", "", "unchanged", "none"},
      {"A\0B"s, "A\0B"s, "A\0B"s, "none"},
      {"\xEF\xBB\xBF{1}", "{1}", "{1}", "'UTF8'"},
      {"\xFF\xFE", "", "unchanged", "'UTF16-LE'"},
      {"\xFE\xFF\0A\0B"s, "\0A\0B"s, "AB", "'UTF16-BE'"},
      {"\0C\0D"s, "\0C\0D"s, "CD", "'UTF16-BE'"},
      {"\0E"s, "\0E"s, "unchanged", "'UTF16-BE'"}};
  FakeHost store;
  ombe_test::LogCapture log;
  for (const auto& [content, text, shown, name] : cases) {
    const ombe_test::TempFile file(content);
    const ByteString path = toByteString(file.path());
    ByteString raw = toByteString("old"), out = toByteString("unchanged");
    EXPECT_TRUE(readFile(&store, path, raw, kWholeFile));
    EXPECT_EQ(view(raw), text);
    EXPECT_EQ(store.calls.take().front(), "setValue CodePage/Autodetected");
    EXPECT_EQ(store.settings.text("CodePage", "Autodetected"), content == text ? "false" : "true");
    EXPECT_EQ(store.settings.text("CodePage", "Name"), name);
    EXPECT_EQ(readDecodedText(&store, path, &out, kWholeFile), shown != "unchanged");
    EXPECT_EQ(view(out), shown);
    EXPECT_FALSE(readDecodedText(nullptr, path, nullptr, kWholeFile));
  }
  const ombe_test::TempFile file("\xEF\xBB\xBF{1}");
  ByteString start;
  EXPECT_TRUE(readFile(nullptr, toByteString(file.path()), start, 2));
  EXPECT_EQ(view(start), "\xEF\xBB");
  EXPECT_THAT(log.take(), testing::IsEmpty());
}

}  // namespace
}  // namespace Ombe
