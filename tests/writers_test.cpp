// Subtitles as files of other formats.
#include <gtest/gtest.h>

#include "host/writers/subtitle_writer.h"

namespace ombe_test {
namespace {

using namespace Ombe;  // NOLINT(google-build-using-namespace): the subject of every test here

TEST(Writers, FormatEverySubtitleForItsReaders) {
  const auto srt = makeWriter("srt");
  const auto jsonl = makeWriter("jsonl");
  std::string srtOut, jsonOut;
  const auto add = [&](const Subtitle& subtitle) {
    srt->append(subtitle, srtOut);
    jsonl->append(subtitle, jsonOut);
  };
  add({3661001, 38999, "<b>A</B>\n<b>B</B>"});
  add({0, 0, "\nA\n\n \t\r\nB\n"});
  add({0xFFFFFFFF, 2, ""});
  add({59999, 1, "\"\\\x1B\x7Fż€😀\xE9t\xC0\xAF\xED\xA0\xF4\x90z\xE2\x82"});
  EXPECT_EQ(srtOut,
            "1\n01:01:01,001 --> 01:01:40,000\n<b>A</b>\n<b>B</b>\n\n"
            "2\n00:00:00,000 --> 00:00:00,000\nA\nB\n\n"
            "3\n1193:02:47,295 --> 00:00:00,001\n\n4\n00:00:59,999 --> 00:01:00,000\n"
            "\"\\\x1B\x7Fż€😀\xE9t\xC0\xAF\xED\xA0\xF4\x90z\xE2\x82\n\n");
  // Each piece of what is no character becomes one U+FFFD.
  EXPECT_EQ(jsonOut, R"({"timestamp": 3661001, "duration": 38999, "text": "<b>A</B>\n<b>B</B>"}
{"timestamp": 0, "duration": 0, "text": "\nA\n\n \t\r\nB\n"}
{"timestamp": 4294967295, "duration": 2, "text": ""}
{"timestamp": 59999, "duration": 1, "text": "\"\\\u001b)"
                     "\x7Fż€😀\uFFFDt\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFDz\uFFFD\"}\n");
}

}  // namespace
}  // namespace ombe_test
