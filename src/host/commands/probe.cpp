#include "host/cli/common_options.h"
#include "host/commands/plugin_description.h"
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

/// What the plug-in calls such files, or why it does not: then the code changes. A session of its
/// own for every file: a code page found in one must not be used for the next.
std::string recognise(const std::string& file, const SessionOptions& options, ExitCode& code) {
  Session session(options);
  try {
    const InputFile input(file);
    if (asNamed(input, [&] { return session.probe(input.path()); })) {
      const auto types = describePlugin(session.library().path(), session.plugin()).mediaTypes;
      if (types.empty()) return "recognised";
      return types.front().first == "text/x-sub" ? "MicroDVD" : types.front().first;
    }
    code = ExitCode::kRefused;
    return "not recognised";
  } catch (const Failure& failure) {
    reportError(messageOf(failure));
    code = ExitCode::kRefused;
    return failure.step() == Step::kRead ? "cannot be read" : "not asked";
  }
}

ExitCode probe(const ProbeOptions& options) {
  ExitCode code = ExitCode::kDone;
  OutputFile output("-");
  for (const std::string& file : options.files) {
    const std::string answer = recognise(file, options.session, code);
    output.buffer().append(visibleLine(file)).append(": ").append(visibleLine(answer)).append("\n");
    output.drain();
  }
  output.commit();
  return code;
}

}  // namespace

Command probeCommand() {
  const auto options = std::make_shared<ProbeOptions>();
  return {.purpose = "Say which files the plug-in recognises, and as what",
          .footer = "Example: ombe probe *.sub *.txt",
          .options = withSourceOptions({filesOption(options->files)}, options->session),
          .run = [options] { return probe(*options); }};
}

}  // namespace Ombe
