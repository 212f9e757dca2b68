#include "host/export/export_file.h"

#include "host/check/text_encoding_check.h"
#include "host/failure.h"
#include "host/input_file.h"
#include "host/options.h"
#include "host/output_file.h"
#include "host/session.h"
#include "host/subtitle_writer.h"
#include "host/utf8_scan.h"

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

  [[nodiscard]] std::string remark(const std::string& file) const {
    if (count_ == 0) return {};
    return file + ": " + std::to_string(count_) +
           " of its texts are not UTF-8: " + codePageAdvice(sample_);
  }

 private:
  static constexpr std::size_t kSampleSize = std::size_t{1} << 16;

  std::size_t count_ = 0;
  std::string sample_;
};

std::string exportSession(Session& session, const InputFile& input, const std::string& output,
                          const std::string& format) {
  session.open(input.path());
  const std::unique_ptr<SubtitleWriter> writer = makeWriter(format);
  OutputFile file(output);
  GarbledTexts garbled;
  writer->begin(file.buffer());
  session.readToEnd([&](const Chunk& chunk) {
    garbled.look(chunk.text());
    writer->append({chunk.timestamp(), chunk.duration(), chunk.text()}, file.buffer());
    file.drain();
  });
  writer->end(file.buffer());
  file.commit();
  return garbled.remark(input.name());
}

}  // namespace

std::string exportFile(const std::string& input, const std::string& output,
                       const Options& options) {
  const InputFile file(input);
  Session session(options.session);
  try {
    return exportSession(session, file, output, options.format);
  } catch (const Failure& failure) {
    if (failure.file() != file.path()) throw;
    throw Failure(file.name(), failure.step(), failure.reason());
  }
}

}  // namespace Ombe
