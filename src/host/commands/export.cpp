#include "host/export/export.h"

#include "host/cli/common_options.h"

namespace Ombe {
namespace {

std::vector<Option> ownOptions(std::vector<std::string>& files, ExportOptions& options) {
  return {{.names = {"FILE"},
           .purpose = "Subtitle files and folders of them; - is standard input",
           .takesFile = true,
           .isRequired = true,
           .isRepeated = true,
           .set = into(files)},
          {.names = {"-f", "--format"},
           .value = "FORMAT",
           .purpose = "Format to write",
           .choices = writerNames(),
           .initial = options.writer.format,
           .set = into(options.writer.format)},
          {.names = {"-o", "--output"},
           .value = "OUT",
           .purpose = "File to write, or folder for several; - is standard output",
           .initial = options.output,
           .more = "An existing file is replaced once the new one is whole.",
           .takesFile = true,
           .set = into(options.output)},
          {.names = {"-j", "--jobs"},
           .value = "N",
           .purpose = "Files to write at once",
           .range = {{1, 64}},
           .more = "Without it, as many as there are processors.",
           .set = into(options.jobs)},
          {.names = {"--vtt-style"},
           .purpose = "Write colours that are none of WebVTT's eight in a style block, with which "
                      "ffmpeg 5.1 and mpv 0.35 read no subtitle at all",
           .set = into(options.writer.vttStyle)},
          colorOrderOption(options.writer.colorOrder)};
}

}  // namespace

Command exportCommand() {
  struct Asked {
    std::vector<std::string> files;
    ExportOptions options;
  };
  const auto asked = std::make_shared<Asked>();
  return {.name = "export",
          .purpose = "Write subtitles in another format",
          .footer =
              "Example: ombe export movie.sub --frame-rate 23.976 -o movie.srt\n"
              "         ombe export -f vtt films/ -o out/",
          .options =
              withSourceOptions(ownOptions(asked->files, asked->options), asked->options.session),
          .run = [asked] { return exportSources(asked->files, asked->options); }};
}

}  // namespace Ombe
