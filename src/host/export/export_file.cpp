#include "host/export/export_file.h"

#include "host/check/check.h"
#include "host/check/fitted_times.h"
#include "host/export/export.h"
#include "host/io/input_file.h"
#include "host/io/output_file.h"
#include "host/session/subtitle.h"
#include "host/text/code_page_advice.h"
#include "host/text/garbled_texts.h"
#include "host/text/number_text.h"

namespace Ombe {
namespace {

void remarkOn(const GarbledTexts& garbled, std::vector<std::string>& remarks) {
  if (garbled.count() == 0) return;
  remarks.push_back(countText(garbled.count(), "text") + (garbled.count() == 1 ? " is" : " are") +
                    " not UTF-8: " + codePageAdvice(garbled.likelyCodePages()));
}

std::vector<std::string> exportSession(Session& session, const InputFile& input,
                                       const std::string& output, const ExportOptions& options) {
  openExplained(session, input, options.session);
  fitTimes(session, input.path(), options.times);
  const auto offset = static_cast<std::int32_t>(session.host().getTimeOffset());
  const std::unique_ptr<SubtitleWriter> writer = makeWriter(options.writer);
  OutputFile file(output);
  GarbledTexts garbled;
  std::size_t leftOut = 0;
  writer->begin(file.buffer());
  session.readToEnd([&](const Chunk& chunk) {
    const auto subtitle = timedSubtitle(chunk, offset);
    if (!subtitle) {
      ++leftOut;
      return;
    }
    garbled.take(subtitle->text);
    writer->append(*subtitle, file.buffer());
    file.drain();
  });
  writer->end(file.buffer());
  std::vector<std::string> remarks = writer->remarks();
  if (const auto& choice = session.codePageChoice()) {
    remarks.insert(remarks.begin(), describe(*choice));
  }
  if (leftOut != 0) {
    remarks.push_back("left out " + std::to_string(leftOut) +
                      " of its subtitles: their times would be before 0 or beyond the last");
  }
  remarkOn(garbled, remarks);
  for (std::string& remark : remarks) remark.insert(0, input.name() + ": ");
  file.commit();  // last, so that no file is in its place and told as failed
  return remarks;
}

}  // namespace

std::vector<std::string> exportFile(const std::string& input, const std::string& output,
                                    const ExportOptions& options) {
  const InputFile file(input);
  Session session(options.session);
  return asNamed(file, [&] { return exportSession(session, file, output, options); });
}

}  // namespace Ombe
