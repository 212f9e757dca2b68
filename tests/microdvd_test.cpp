// The pure functions of the MicroDVD format.
#include <gtest/gtest.h>

#include <cstdio>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "container/stream_choice.h"
#include "microdvd/lines/frame_rate.h"
#include "microdvd/lines/line_scan.h"
#include "microdvd/lines/style_codes.h"
#include "microdvd/lines/text_tokenizer.h"
#include "ombe_core/string_tools.h"
#include "support/table.h"

namespace Ombe {
namespace {

TEST(StyleCodes, TurnOneMarkerAtTheStartIntoTags) {
  EXPECT_EQ(translateStyleCodes("").str(), "");
  for (const auto& row : ombe_test::readTable("style_codes.txt")) {
    EXPECT_EQ(translateStyleCodes(row.at(0)).str(), row.at(1)) << row.at(0);
  }
}

std::string tokensOf(std::string text, const char* delimiters = "\r\n") {
  TextTokenizer tokens(text.data());
  std::string dump;
  std::uint32_t reported = 0;
  while (const char* token = tokens.nextToken(delimiters, &reported)) {
    dump += "[" + std::string(token) + "]" + std::to_string(reported);
  }
  EXPECT_EQ(tokens.nextToken(delimiters, nullptr), nullptr) << "the end must stay the end";
  return dump;
}

TEST(Tokenizer, SplitsAtRunsOfDelimitersAndReportsRoom) {
  EXPECT_EQ(tokensOf(""), "");
  EXPECT_EQ(tokensOf("\r\n\n"), "");
  EXPECT_EQ(tokensOf("a"), "[a]1");
  EXPECT_EQ(tokensOf("a\n"), "[a]2");
  EXPECT_EQ(tokensOf("\nab\r\n\r\nc\rdef"), "[ab]3[c]2[def]3");
  EXPECT_EQ(tokensOf("a;b\n", ";"), "[a]2[b\n]2");
}

/// Count, numbers and text as the platform reads them.
std::string dumpOfSscanf(const std::string& line) {
  int first = 0;
  int last = 0;
  std::vector<char> text(line.size() + 1);
  const int count = std::sscanf(line.c_str(), "{%d}{%d}%[^\r\n]\n", &first, &last, text.data());
  std::string dump = std::to_string(std::max(count, 0));
  if (count >= 1) dump += " " + std::to_string(first);
  if (count >= 2) dump += " " + std::to_string(last);
  return count == 3 ? dump + " " + text.data() : dump;
}

std::string dumpOfScan(const std::string& line) {
  const ScannedLine scanned = scanLine(line.c_str());
  std::string dump = std::to_string(scanned.count);
  if (scanned.count >= 1) dump += " " + std::to_string(scanned.firstFrame);
  if (scanned.count >= 2) dump += " " + std::to_string(scanned.lastFrame);
  return scanned.count == 3 ? dump + " " + std::string(scanned.text, scanned.textLength) : dump;
}

void compareAllLines(const std::string& begun, int more) {
  ASSERT_EQ(dumpOfScan(begun), dumpOfSscanf(begun)) << begun;
  if (more == 0) return;
  for (const char* piece : {"{", "}", "7", "-", " ", "x\n", "9223372036854775808"}) {
    compareAllLines(begun + piece, more - 1);
  }
}

TEST(LineScan, AgreesWithSscanf) {
  compareAllLines("", 6);
  compareAllLines("{1}{2", 4);
  for (const auto& row : ombe_test::readTable("line_scan.txt")) {
    const std::string& number = row.at(0);
    for (const char* rest : {"}{2}text", "}{2}", "}", "} {2}text"}) {
      const std::string line = "{" + number + rest;
      EXPECT_EQ(dumpOfScan(line), dumpOfSscanf(line)) << line;
      const std::string swapped = "{1}{" + number + "}text";
      EXPECT_EQ(dumpOfScan(swapped), dumpOfSscanf(swapped)) << swapped;
    }
  }
}

TEST(FrameTimes, AreUnsignedWrapAndTruncate) {
  struct Case {
    std::int32_t frame;
    FrameRate rate;
    std::uint32_t milliseconds;
  };
  const Case cases[] = {
      {0, {25, 1}, 0},
      {1, kDefaultFrameRate, 41},
      {24, kDefaultFrameRate, 1001},
      {1000, kDefaultFrameRate, 41708},
      {25, {25, 1}, 1000},
      {1000, {23976, 1000}, 41708},
      {-1, {25, 1}, 4294967295ULL * 1000 / 25 & 0xFFFFFFFF},
      {2147483647, {25, 1}, 2147483647ULL * 1000 / 25 & 0xFFFFFFFF},
      {7, {3, 1ULL << 62}, static_cast<std::uint32_t>((7 * (1ULL << 62) * 1000) / 3)},
      {5, {0xFFFFFFFFFFFFFFFF, 1}, 0}};
  for (const Case& c : cases) {
    EXPECT_EQ(frameToMilliseconds(c.frame, c.rate), c.milliseconds) << c.frame;
  }
}

TEST(StreamChoice, PrefersLanguageThenRegionThenTheFirst) {
  for (const auto& row : ombe_test::readTable("stream_choice.txt")) {
    std::istringstream in(row.at(0));
    const std::vector<std::string> words{std::istream_iterator<std::string>(in), {}};
    std::vector<StreamLanguage> streams;
    for (std::size_t at = 0; at < words.size(); at += 3) {
      const std::string_view region = words.at(at + 2);
      streams.push_back({std::stoull(words[at]), words[at + 1], region == "-" ? "" : region});
    }
    EXPECT_EQ(chooseStream(streams, row.at(1).c_str()), std::stoull(row.at(2))) << row.at(1);
  }
}

TEST(StringTools, KeepEveryPathAndConvertBothWays) {
  for (const std::string path : {"/a", "/\xC5\xBC\xE2\x82\xAC\xF0\x9F\x8E\xAC", "/\xFF\xC0\xAF",
                                 "/\xED\xA0\x80\xC3", "/\xC3\xBF", ""}) {
    const StringTools::UString bytes(path.begin(), path.end());
    EXPECT_EQ(StringTools::wstringToBytes(StringTools::uStringToWstring(bytes)), path);
  }
  EXPECT_EQ(StringTools::uStringToWstring({0xF0, 0x9F, 0x8E, 0xAC}).size(), 1U);
  const std::pair<const char*, const char*> codes[] = {{"en", "eng"}, {"eng", "en"}, {"de", "deu"},
                                                       {"ger", "de"}, {"xx", "xx"},  {"", ""}};
  for (const auto& [code, other] : codes) EXPECT_EQ(StringTools::convertLanguageCode(code), other);
}

}  // namespace
}  // namespace Ombe
