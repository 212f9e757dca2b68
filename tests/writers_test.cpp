// Subtitles as files of other formats.
#include <gtest/gtest.h>

#include <sstream>

#include "host/writers/subtitle_writer.h"
#include "support/table.h"

namespace ombe_test {
namespace {

using namespace Ombe;  // NOLINT(google-build-using-namespace): the subject of every test here

TEST(Writers, FormatEverySubtitleForItsReaders) {
  for (const auto& row : readTable("writers.txt")) {
    SCOPED_TRACE(row[0] + ": " + row[1]);
    const auto asks = [&row](const char* word) { return row[0].find(word) != std::string::npos; };
    const auto writer =
        makeWriter({.format = row[0].substr(0, row[0].find(' ')),
                    .vttStyle = asks(" style"),
                    .colorOrder = asks(" bgr") ? ColorOrder::kBgr : ColorOrder::kRgb});
    std::string out, text, remarks;
    writer->begin(out);
    std::istringstream subtitles(row[1]);
    for (Subtitle subtitle{}; subtitles >> subtitle.timestamp >> subtitle.duration;) {
      std::getline(subtitles.ignore(), text, '|');
      subtitle.text = text;
      writer->append(subtitle, out);
    }
    writer->end(out);
    EXPECT_EQ(out, row[2]);
    for (const std::string& remark : writer->remarks()) remarks += remark;
    EXPECT_EQ(remarks, row.size() > 3 ? row[3] : "");
  }
  EXPECT_EQ(makeWriter({.format = "vtx"}), nullptr);
}

TEST(Writers, LookAtAByteAFewTimesOnly) {
  // Whatever looks from each of these to the end does not come back before the test is ended.
  constexpr std::size_t kMany = 4000000;
  std::string tags;
  while (tags.size() < kMany) tags += "<b><i><font color=\"#ff00ff\">";
  for (const std::string& text : {std::string(kMany, '<'), std::string(kMany, '-'), tags}) {
    for (const std::string& format : writerNames()) {
      std::string out;
      makeWriter({.format = format})->append({0, 1, text}, out);
      EXPECT_TRUE(out.size() > kMany / 2 && out.size() < 5 * kMany) << format;
    }
  }
}

}  // namespace
}  // namespace ombe_test
