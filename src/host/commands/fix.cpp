#include "host/cli/common_options.h"
#include "host/cli/film_options.h"
#include "host/fix/fix_files.h"

namespace Ombe {
namespace {

std::vector<Option> optionsOf(FixRequest& request) {
  std::vector<Option> own = outputOptions(request.choice);
  own.insert(own.begin(), sourcesOption(request.sources));
  own.insert(
      own.end(),
      {{.names = {"--in-place"},
        .purpose = "Replace the files, which stay as NAME.orig",
        .set = into(request.inPlace)},
       {.names = {"--thorough"},
        .purpose = "Mend also what changes how a file plays that opens as it is",
        .more = "Ends before their starts, second braces that are not closed, control bytes.",
        .set = into(request.options.thorough)},
       {.names = {"--dry-run"},
        .purpose = "Only tell what would be done",
        .set = into(request.dryRun)},
       jobsOption(request.jobs),
       jsonOption(request.json)});
  own = withSourceOptions(std::move(own), request.options.session);
  // Texts have no language, and times are frames.
  std::erase_if(own, [](const Option& option) {
    return option.names.back() == "--language" || option.names.back() == "--offset";
  });
  return own;
}

}  // namespace

Command fixCommand() {
  const auto request = std::make_shared<FixRequest>();
  Command command = {
      .purpose = "Mend files so that the plug-in opens them, and say what was done",
      .footer =
          "Frame numbers stay as they are, but for --sync: it moves them by whole frames, and "
          "a header states the rate.\n"
          "Example: ombe fix movie.sub -o mended.sub\n"
          "         ombe fix films/ -o mended/",
      .options = optionsOf(*request),
      .run = [request] { return fixSources(*request); }};
  return withFilmTimes(std::move(command), request->options.times, request->options.session);
}

}  // namespace Ombe
