#include "host/commands/commands.h"
#include "host/messages.h"
#include "host/options.h"
#include "host/output_file.h"
#include "host/session.h"
#include "host/subtitle_writer.h"
#include "host/utf8_scan.h"

namespace Ombe {

ExitCode runExport(const Options& options) {
  const std::string& file = options.files.front();
  Session session(options.session);
  session.open(file);
  const std::unique_ptr<SubtitleWriter> writer = makeWriter(options.format);
  OutputFile output(options.output);
  writer->begin(output.buffer());
  std::size_t garbled = 0;
  session.readToEnd([&](const Chunk& chunk) {
    if (!isUtf8(chunk.text())) ++garbled;
    writer->append({chunk.timestamp(), chunk.duration(), chunk.text()}, output.buffer());
    output.drain();
  });
  output.commit();
  if (garbled > 0) {
    reportError(file + ": " + std::to_string(garbled) +
                " of its texts are not UTF-8: name their code page with --code-page");
  }
  return ExitCode::kDone;
}

}  // namespace Ombe
