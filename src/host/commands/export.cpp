#include "host/export/export.h"

#include <optional>

#include "host/cli/common_options.h"

namespace Ombe {
namespace {

struct Asked {
  std::vector<std::string> files;
  std::optional<std::string> format;
  ExportOptions options;
};

ExitCode exportAsked(const Asked& asked) {
  ExportOptions options = asked.options;
  options.takesEnding = !asked.format;
  if (asked.format) options.writer.format = *asked.format;
  return exportSources(asked.files, options);
}

std::vector<Option> ownOptions(Asked& asked) {
  ExportOptions& options = asked.options;
  return {{.names = {"FILE"},
           .purpose = "Subtitle files and folders of them; - is standard input",
           .takesFile = true,
           .isRequired = true,
           .isRepeated = true,
           .set = into(asked.files)},
          {.names = {"-f", "--format"},
           .value = "FORMAT",
           .purpose = "Format to write",
           .choices = writerNames(),
           .initial = options.writer.format,
           .more = "Without it, the ending of OUT may say another.",
           .set = into(asked.format)},
          {.names = {"-o", "--output"},
           .value = "OUT",
           .purpose = "File to write, or folder for several; - is standard output",
           .initial = options.output,
           .more = "An existing file, other than an input, is replaced once the new one is on "
                   "the disk as a whole.",
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
  const auto asked = std::make_shared<Asked>();
  return {.name = "export",
          .purpose = "Write subtitles in another format",
          .footer =
              "Example: ombe export movie.sub --frame-rate 23.976 -o movie.srt\n"
              "         ombe export -f vtt films/ -o out/",
          .options = withSourceOptions(ownOptions(*asked), asked->options.session),
          .run = [asked] { return exportAsked(*asked); }};
}

}  // namespace Ombe
