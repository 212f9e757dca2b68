#include "host/commands/commands.h"
#include "host/options.h"
#include "host/output_file.h"
#include "host/session.h"
#include "host/subtitle_writer.h"

namespace Ombe {

ExitCode runExport(const Options& options) {
  Session session(options.session);
  session.open(options.files.front());
  const std::unique_ptr<SubtitleWriter> writer = makeWriter(options.format);
  OutputFile output(options.output);
  writer->begin(output.buffer());
  session.readToEnd([&](const Chunk& chunk) {
    writer->append({chunk.timestamp(), chunk.duration(), chunk.text()}, output.buffer());
    output.drain();
  });
  output.commit();
  return ExitCode::kDone;
}

}  // namespace Ombe
