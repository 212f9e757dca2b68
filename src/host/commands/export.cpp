#include "host/export/export.h"

#include "host/cli/common_options.h"
#include "host/cli/film_options.h"

namespace Ombe {
namespace {

struct ExportArguments {
  std::vector<std::string> files;
  ExportOptions options;
};

std::vector<Option> ownOptions(ExportArguments& asked) {
  ExportOptions& options = asked.options;
  std::vector<Option> own = outputOptions(options.choice);
  own.insert(own.begin(), {sourcesOption(asked.files),
                           {.names = {"-f", "--format"},
                            .value = "FORMAT",
                            .purpose = "Format to write",
                            .choices = writerNames(),
                            .initial = options.writer.format,
                            .more = "Without it, the ending of OUT or NAME may say another.",
                            .set = into(options.format)}});
  own.insert(own.end(),
             {jobsOption(options.jobs),
              {.names = {"--vtt-style"},
               .purpose = "Write colours that are none of WebVTT's eight in a style block, with "
                          "which ffmpeg 5.1 and mpv 0.35 read no subtitle at all",
               .set = into(options.writer.vttStyle)},
              colorOrderOption(options.writer.colorOrder)});
  return own;
}

}  // namespace

Command exportCommand() {
  const auto asked = std::make_shared<ExportArguments>();
  SessionOptions& session = asked->options.session;
  Command command = {.purpose = "Write subtitles in another format",
                     .footer =
                         "Example: ombe export movie.sub --frame-rate 23.976 -o movie.srt\n"
                         "         ombe export -f vtt films/ -o out/",
                     .options = withSourceOptions(ownOptions(*asked), session),
                     .run = [asked] { return exportSources(asked->files, asked->options); }};
  return withFilmTimes(std::move(command), asked->options.times, session);
}

}  // namespace Ombe
