#include "host/export/export_file.h"

#include "host/check/text_encoding_check.h"
#include "host/export/export_options.h"
#include "host/io/input_file.h"
#include "host/io/input_name.h"
#include "host/io/output_file.h"
#include "host/session/session.h"
#include "host/session/subtitle.h"
#include "host/text/utf8_scan.h"
#include "host/writers/subtitle_writer.h"

namespace Ombe {
namespace {

/// Texts that came out garbled, for lack of the right code page.
class GarbledTexts {
 public:
  void look(std::string_view text) {
    if (isUtf8(text)) return;
    ++count_;
    if (sample_.size() < kSampleSize) sample_.append(text).append("\n");
  }

  void remark(std::vector<std::string>& remarks) const {
    if (count_ == 0) return;
    remarks.push_back(std::to_string(count_) +
                      " of its texts are not UTF-8: " + codePageAdvice(sample_));
  }

 private:
  static constexpr std::size_t kSampleSize = std::size_t{1} << 16;

  std::size_t count_ = 0;
  std::string sample_;
};

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
    garbled.look(subtitle->text);
    writer->append(*subtitle, file.buffer());
    file.drain();
  });
  writer->end(file.buffer());
  file.commit();
  std::vector<std::string> remarks = writer->remarks();
  garbled.remark(remarks);
  for (std::string& remark : remarks) remark.insert(0, input.name() + ": ");
  return remarks;
}

}  // namespace

std::vector<std::string> exportFile(const std::string& input, const std::string& output,
                                    const ExportOptions& options) {
  const InputFile file(input);
  Session session(options.session);
  return underItsName(file, [&] { return exportSession(session, file, output, options); });
}

}  // namespace Ombe
