#include "host/cli/common_options.h"
#include "host/io/input_file.h"
#include "host/io/messages.h"
#include "host/io/output_file.h"
#include "host/session/session.h"
#include "host/text/visible_text.h"

namespace Ombe {
namespace {

struct ProbeOptions {
  std::vector<std::string> files;
  SessionOptions session;
};

/// A session of its own for every file: a code page found in one must not be used for the next.
bool isRecognised(const std::string& file, const SessionOptions& options) {
  Session session(options);
  try {
    const InputFile input(file);
    return asNamed(input, [&] { return session.probe(input.path()); });
  } catch (const Failure& failure) {
    reportError(messageOf(failure));
    return false;
  }
}

ExitCode probe(const ProbeOptions& options) {
  ExitCode code = ExitCode::kDone;
  OutputFile output("-");
  for (const std::string& file : options.files) {
    const bool recognised = isRecognised(file, options.session);
    output.buffer()
        .append(visibleLine(file))
        .append(recognised ? ": MicroDVD\n" : ": not recognised\n");
    output.drain();
    if (!recognised) code = ExitCode::kRefused;
  }
  output.commit();
  return code;
}

}  // namespace

Command probeCommand() {
  const auto options = std::make_shared<ProbeOptions>();
  return {.name = "probe",
          .purpose = "Say which files are MicroDVD",
          .footer = "Example: ombe probe *.sub *.txt",
          .options = withSourceOptions({filesOption(options->files)}, options->session),
          .run = [options] { return probe(*options); }};
}

}  // namespace Ombe
