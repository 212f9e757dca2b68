#include "host/export/export_file.h"

#include "host/export/export_options.h"
#include "host/io/input_file.h"
#include "host/io/output_file.h"
#include "host/session/session.h"
#include "host/session/subtitle.h"
#include "host/text/garbled_texts.h"
#include "host/writers/subtitle_writer.h"

namespace Ombe {
namespace {

void remarkOn(const GarbledTexts& garbled, std::vector<std::string>& remarks) {
  if (garbled.count() == 0) return;
  remarks.push_back(std::to_string(garbled.count()) +
                    " of its texts are not UTF-8: " + codePageAdvice(garbled.likelyCodePages()));
}

std::vector<std::string> exportSession(Session& session, const InputFile& input,
                                       const std::string& output, const ExportOptions& options) {
  session.open(input.path());
  const std::unique_ptr<SubtitleWriter> writer = makeWriter(options.writer);
  OutputFile file(output);
  GarbledTexts garbled;
  writer->begin(file.buffer());
  session.readToEnd([&](const Chunk& chunk) {
    const auto subtitle = timedSubtitle(chunk, options.session.offsetMs);
    if (!subtitle) return;
    garbled.take(subtitle->text);
    writer->append(*subtitle, file.buffer());
    file.drain();
  });
  writer->end(file.buffer());
  file.commit();
  std::vector<std::string> remarks = writer->remarks();
  remarkOn(garbled, remarks);
  for (std::string& remark : remarks) remark.insert(0, input.name() + ": ");
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
