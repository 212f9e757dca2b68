// From a URI to UTF-8 text: paths, files, signatures, conversions, and what failures leave behind.
#include <gmock/gmock.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "ombe_core/logger.h"
#include "ombe_core/setting_store.h"
#include "ombe_core/string_tools.h"
#include "support/allocation_faults.h"
#include "text/charset.h"
#include "text/converter.h"
#include "text/file_reader.h"
#include "text/memory_buffer.h"
#include "text/source_path.h"
#include "text/text_settings.h"
#include "text/utf8.h"

namespace Ombe {
namespace {

using KMDSOLD::UCNVLibrary;
using OmbeTest::AllocationFault;
using OmbeTest::FaultMode;
using std::string_literals::operator""s;
using testing::ElementsAre;
using Strings = std::vector<std::string>;

const unsigned char* bytesOf(const std::string& text) {
  return reinterpret_cast<const unsigned char*>(text.data());
}

std::string joined(const Strings& lines) {
  std::string out;
  for (const std::string& line : lines) out += (out.empty() ? "" : " ") + line;
  return out;
}

std::uint32_t sizeOf(const std::string& text) { return static_cast<std::uint32_t>(text.size()); }

/// Keeps what it is given, and a line for each write, in order.
struct Store : SettingStore {
  bool getValue(const Setting& setting, SettingValue& out) override {
    const auto found = values.find(std::string(view(setting.name())));
    if (found != values.end()) out = found->second;
    return found != values.end();
  }
  void setValue(const Setting& setting, const SettingValue& value) override {
    const std::unique_ptr<String> text(value.asString());
    if (text != nullptr) owned = *text;
    const std::string name(view(setting.name()));
    values[name] = text == nullptr ? value : SettingValue::string(&owned);
    writes.push_back(name + "=" +
                     (value.isString()     ? owned.c_str()
                      : *value.asBoolean() ? "1"
                                           : "0"));
  }
  void setCodePage(const char* name) {
    setValue(codePageNameSetting(), SettingValue::string(new String(name)));
  }

  Strings writes;
  std::map<std::string, SettingValue> values;
  String owned;
};

std::string pathOf(const std::string& uri) {
  ByteString out = toByteString("unchanged");
  const Status status = uriToFilePath(toByteString(uri), out);
  EXPECT_EQ(status, view(out) == "unchanged" ? kNotALocalFile : kSuccess);
  return std::string(view(out));
}

TEST(SourcePath, IsThePathOfALocalFileWithEveryCharacterAsItWas) {
  EXPECT_EQ(pathOf("FiLe:///a b.sub"), "/a b.sub");
  EXPECT_EQ(pathOf("file:a"), "a");
  EXPECT_EQ(pathOf("file://host/a"), "/a");
  EXPECT_EQ(pathOf("/a\0\xFF"s), "/a");
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
    std::vector<unsigned char> text = {static_cast<unsigned char>(i >> 12),
                                       static_cast<unsigned char>(i >> 4),
                                       kTails[(i >> 2) & 3],
                                       kTails[i & 3],
                                       '.',
                                       '.',
                                       '.',
                                       '.'};
    const std::wstring points = StringTools::uStringToWstring({text.data(), text.size()});
    ASSERT_EQ(isWellFormedUtf8({reinterpret_cast<const char*>(text.data()), text.size()}),
              std::none_of(points.begin(), points.end(), isEscape))
        << i;
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
  const Strings rows = {
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
    const std::string text = rows[i + 1] + std::string(encoded, length);
    String name;
    ASSERT_EQ(detectTextSignature(bytesOf(text), sizeOf(text), name), rows[i + 1].size());
    EXPECT_EQ(view(name), rows[i]);
    Store store;
    store.setCodePage(name.c_str());
    EXPECT_EQ(decoded(&store, text.substr(rows[i + 1].size())), "\xC5\xBDo") << rows[i];
  }
  for (const char* text :
       {"+/vA", "+/v", "\xEF\xBB", "\xFF", "\xFE", "\x84\x31\x95", "\xFB\xEE", ""}) {
    const std::vector<char> exact(text, text + std::strlen(text));
    String name = "old";
    EXPECT_EQ(detectTextSignature(reinterpret_cast<const unsigned char*>(exact.data()),
                                  sizeOf(text), name),
              0)
        << text;
    EXPECT_EQ(view(name), "old");
  }
}

TEST(Decoding, UsesTheStoredCodePageAndChecksTheFirstCharacter) {
  const struct {
    const char* codePage;
    std::string text, expected;
  } cases[] = {
      {"", "AB\xFF", "AB\xFF"},
      {"", "A\0B"s, "A\0B"s},
      {"", "A", "unchanged"},
      {"", "", "unchanged"},
      {"", "\xC0\x80.", "unchanged"},
      {"CP1250", "\x8Eo", "\xC5\xBDo"},
      {"CP1250", "A", "unchanged"},
      {"CP1250", "", "unchanged"},
      {"no such code page", "AB", "unchanged"},
      {"UTF16-LE", "A\0B\0\0\0C\0"s, "AB"},
      {"UTF8", "A\xC5", "A\xEF\xBF\xBD"},
  };
  Store store;
  for (const auto& row : cases) {
    store.setCodePage(row.codePage);
    EXPECT_EQ(decoded(&store, row.text), row.expected) << row.codePage << " " << row.text;
  }
  for (const auto& value : {SettingValue::string(nullptr), SettingValue::boolean(true)}) {
    store.values["Name"] = value;
    EXPECT_EQ(decoded(&store, "AB\x8E"), "AB\x8E");
  }
  EXPECT_EQ(decoded(nullptr, "AB"), "AB");
  ByteString out;
  EXPECT_FALSE(convertAndCheck(String(), bytesOf("AB"), 2, out));
}

TEST(Conversion, FailsSoftlyWithoutALibraryAFunctionACodePageOrMemory) {
  const std::string version = std::to_string(OMBE_ICU_VERSION);
  const UCNVLibrary whole("libicuuc.so." + version, "_" + version);
  const UCNVLibrary noLibrary("no-such-library.so", "_" + version);
  const UCNVLibrary noFunction("libicuuc.so." + version, "_1");
  for (const UCNVLibrary* library : {&noLibrary, &noFunction}) {
    EXPECT_FALSE(library->isLoaded());
    UErrorCode errors[3] = {};
    EXPECT_EQ(library->open("UTF8", errors), nullptr);
    EXPECT_EQ(library->open("UTF8", nullptr), nullptr);
    library->toUnicode({}, {}, {}, {}, {}, {}, true, errors + 1);
    library->fromUnicode({}, {}, {}, {}, {}, {}, true, errors + 2);
    library->close(nullptr);
    EXPECT_THAT(errors, testing::Each(5));
    EXPECT_EQ(convertToUtf8("UTF8", bytesOf("AB"), 2, library), "");
  }
  ASSERT_TRUE(whole.isLoaded());
  char16_t* units = nullptr;
  std::size_t count = 7;
  EXPECT_FALSE(toUtf16("UTF8", bytesOf("AB"), 0, &units, &count, &whole));
  EXPECT_FALSE(toUtf16("", bytesOf("AB"), 2, &units, &count, &whole));
  EXPECT_EQ(count, 7);  // not even begun
  EXPECT_FALSE(toUtf16("no such code page", bytesOf("AB"), 2, &units, &count, &whole));
  EXPECT_EQ(count, 0);
  count = 7;
  const AllocationFault fault(1, FaultMode::kOnce);
  EXPECT_FALSE(toUtf16("UTF8", bytesOf("AB"), 2, &units, &count, &whole));
  EXPECT_TRUE(units == nullptr && count == 0);
}

TEST(Conversion, BindsTheLibraryOnceForAllThreads) {
  const std::string many(100000, '\x80');
  std::vector<const UCNVLibrary*> bindings(8);
  {
    std::vector<std::jthread> threads;
    threads.reserve(bindings.size());
    for (auto& binding : bindings) {
      threads.emplace_back([&] {
        EXPECT_EQ(convertToUtf8("CP1252", bytesOf(many), sizeOf(many)).size(), 3 * many.size());
        binding = &UCNVLibrary::instance();
      });
    }
  }
  EXPECT_THAT(bindings, testing::Each(&UCNVLibrary::instance()));
}

TEST(MemoryBufferTest, HasABlockExactlyWhenItsSizeIsNotZero) {
  ktl::MemoryBuffer<char> buffer(3, true);
  ASSERT_FALSE(buffer.isNull());
  EXPECT_EQ(std::string(buffer.data(), 3), "\0\0\0"s);
  buffer.data()[1] = 'x';
  buffer.resize(3, false);
  EXPECT_EQ(std::string(buffer.data(), 3), "\0x\0"s);
  buffer.resize(3, true);
  EXPECT_EQ(std::string(buffer.data(), 3), "\0\0\0"s);
  const AllocationFault fault(1, FaultMode::kOnce);
  buffer.resize(4, true);
  EXPECT_TRUE(buffer.isNull());
  buffer.resize(4, true);
  EXPECT_FALSE(buffer.isNull());
}

/// A file in a directory of its own, and the log records written meanwhile.
class Reading : public testing::Test {
 public:
  Reading() {
    std::string pattern = std::filesystem::temp_directory_path() / "ombe-text-XXXXXX";
    directory = ::mkdtemp(pattern.data());
    Logger::instance().setSink([this](const LogRecord& record) {
      records.push_back(record.channel + " "s + record.function + ":" +
                        std::to_string(record.line) + " " + record.text);
    });
  }
  ~Reading() override {
    Logger::instance().setSink(nullptr);
    std::filesystem::remove_all(directory);
  }

  ByteString write(const std::string& content) const {
    std::ofstream(directory / "a.sub", std::ios::binary) << content;
    return toByteString((directory / "a.sub").string());
  }

  std::filesystem::path directory;
  Strings records;
  Store store;
};

TEST_F(Reading, StripsTheSignatureAndRecordsWhatItFound) {
  const struct {
    std::string content;
    std::uint32_t limit;
    std::string text, writes;
  } cases[] = {{"", kWholeFile, "", "Autodetected=0"},
               {"0123456789", kWholeFile, "0123456789", "Autodetected=0"},
               {"0123456789", 4, "0123", "Autodetected=0"},
               {"A\0B"s, kWholeFile, "A\0B"s, "Autodetected=0"},
               {"\xEF\xBB\xBF{1}", kWholeFile, "{1}", "Autodetected=1 Name=UTF8"},
               {"\xEF\xBB\xBF{1}", 2, "\xEF\xBB", "Autodetected=0"},
               {"\xFF\xFE", kWholeFile, "", "Autodetected=1 Name=UTF16-LE"}};
  for (const auto& row : cases) {
    ByteString out = toByteString("old");
    store.writes.clear();
    EXPECT_TRUE(readFile(&store, write(row.content), out, row.limit));
    EXPECT_EQ(view(out), row.text);
    EXPECT_EQ(joined(store.writes), row.writes);
    EXPECT_TRUE(readFile(nullptr, write(row.content), out, row.limit));
  }
  EXPECT_THAT(records, ElementsAre());
}

TEST_F(Reading, ThatFailsIsLoggedAndChangesNothing) {
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  const std::string missing = directory / "missing.sub";
  ByteString out = toByteString("unchanged");
  const auto failure = [&](const ByteString& path, std::uint32_t limit) {
    records.clear();
    EXPECT_FALSE(readDecodedText(&store, path, &out, limit));
    return joined(records);
  };
  EXPECT_EQ(failure(toByteString(missing), kWholeFile),
            "Utilities readFile:284 Failed to open file " + missing + "\n");
  EXPECT_EQ(failure(toByteString(directory.string()), 16),
            "Utilities readFile:309 Tried to read 16 bytes, got -1\n");
  EXPECT_EQ(failure(toByteString("/proc/self/fd/" + std::to_string(ends[0])), kWholeFile),
            "Utilities readFile:298 Couldn't allocate 0 bytes\n");
  const ByteString path = write("0123456789");
  EXPECT_EQ(failure(path, 1024), "Utilities readFile:309 Tried to read 1024 bytes, got 10\n");
  std::filesystem::resize_file(directory / "a.sub", 0x100000000);
  EXPECT_EQ(failure(path, kWholeFile),
            "Utilities readFile:298 Couldn't allocate 4294967297 bytes\n");
  EXPECT_EQ(view(out), "unchanged");
  EXPECT_THAT(store.writes, ElementsAre());
  for (const int end : ends) ::close(end);
}

TEST_F(Reading, ForDetectionDecodesAndKeepsTheNameWithoutASignature) {
  ByteString out;
  EXPECT_FALSE(readDecodedText(&store, write("AB"), nullptr, kWholeFile));
  store.setCodePage("CP1250");
  EXPECT_TRUE(readDecodedText(&store, write("\x8Eo"), &out, kWholeFile));
  EXPECT_EQ(view(out), "\xC5\xBDo");
  EXPECT_TRUE(readDecodedText(&store, write("\xFE\xFF\0A\0B"s), &out, kWholeFile));
  EXPECT_TRUE(readDecodedText(&store, write("\0C\0D"s), &out, kWholeFile));
  EXPECT_FALSE(readDecodedText(&store, write("\0E"s), &out, kWholeFile));
  EXPECT_EQ(view(out), "CD");
}

TEST_F(Reading, LeaksNeitherMemoryNorADescriptorWhenAnAllocationFails) {
  const ByteString path = write("\xFF\xFE{\0}\0"s);
  const auto run = [&](long nth, FaultMode mode) {
    Store fresh;
    ByteString out;
    const AllocationFault fault(nth, mode);
    try {
      if (uriToFilePath(path, out) == kSuccess) readDecodedText(&fresh, path, &out, kWholeFile);
    } catch (const std::bad_alloc&) {  // may come out; what matters is what stays behind
    }
    return fault.happened();
  };
  Logger::instance().setSink(nullptr);  // the records would count as leaks
  run(0, FaultMode::kOnce);             // what lives as long as the process comes into being
  const auto descriptors = [] {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
  };
  const auto open = descriptors();
  const long live = OmbeTest::liveAllocations();
  for (const auto mode : {FaultMode::kOnce, FaultMode::kFromThereOn}) {
    long nth = 1;
    while (run(nth, mode)) ++nth;
    EXPECT_GT(nth, 5);
    EXPECT_EQ(OmbeTest::liveAllocations(), live);
  }
  EXPECT_EQ(descriptors(), open);
}

}  // namespace
}  // namespace Ombe
