#include "host/cli/common_options.h"

#include <filesystem>
#include <system_error>

#include "host/io/messages.h"
#include "host/text/number_text.h"

namespace Ombe {

Option fileOption(std::vector<std::string>& files) {
  return {.names = {"FILE"},
          .purpose = "Subtitle file; - is standard input",
          .takesFile = true,
          .isRequired = true,
          .set = into(files)};
}

Option filesOption(std::vector<std::string>& files) {
  Option option = fileOption(files);
  option.purpose = "Subtitle files; - is standard input";
  option.isRepeated = true;
  return option;
}

Option sourcesOption(std::vector<std::string>& sources) {
  Option option = filesOption(sources);
  option.purpose = "Subtitle files and folders of them; - is standard input";
  return option;
}

Option jobsOption(std::size_t& jobs) {
  return {.names = {"-j", "--jobs"},
          .value = "N",
          .purpose = "Files to work on at once",
          .range = {{1, 64}},
          .more = "Without it, as many as there are processors.",
          .set = into(jobs)};
}

std::vector<Option> outputOptions(OutputChoice& choice) {
  const auto setName = [&choice](const std::string& text) {
    choice.name = text;
    return text.find("{stem}") != std::string::npos && text.find('/') == std::string::npos;
  };
  return {{.names = {"-o", "--output"},
           .value = "OUT",
           .purpose = "File to write, or folder for several; - is standard output",
           .initial = choice.output,
           .more = "An existing file, other than an input, is replaced once the new one is on "
                   "the disk as a whole.",
           .takesFile = true,
           .set = into(choice.output)},
          {.names = {"--beside"},
           .purpose = "Write each file beside its source",
           .set = into(choice.isBeside)},
          {.names = {"--name"},
           .value = "NAME",
           .purpose = "Name of each output, such as {stem}.pl.srt, where {stem} is the source's "
                      "name without its ending",
           .refusal = "must hold {stem} and no slash",
           .set = setName},
          {.names = {"--no-clobber"},
           .purpose = "Leave files as they are that exist",
           .set = into(choice.keepsExisting)}};
}

Option jsonOption(bool& json) {
  return {.names = {"--json"}, .purpose = "Write JSON", .set = into(json)};
}

Option colorOption(ColorMode& color) {
  return choosing<ColorMode>(
      {.names = {"--color"},
       .value = "WHEN",
       .purpose = "When to use colours",
       .more = "Without it, auto: on a terminal that knows them."},
      color,
      {{"auto", ColorMode::kAuto}, {"always", ColorMode::kAlways}, {"never", ColorMode::kNever}});
}

Option colorOrderOption(ColorOrder& order) {
  return choosing<ColorOrder>(
      {.names = {"--color-order"},
       .value = "ORDER",
       .purpose = "How colours in the file are meant: rgb, as the engine shows "
                  "them, or bgr, as many players of the format do",
       .more = "Without it, rgb."},
      order, {{"rgb", ColorOrder::kRgb}, {"bgr", ColorOrder::kBgr}});
}

std::string pluginsBesideProgram() {
  namespace fs = std::filesystem;
  std::error_code error;
  const fs::path program = fs::read_symlink("/proc/self/exe", error);
  if (error) return {};
  return (program.parent_path() / OMBE_PLUGINS_FROM_PROGRAM).lexically_normal();
}

namespace {

std::vector<Option> sessionOptions(SessionOptions& session) {
  const auto showLog = [](const std::string& /*none*/) { return logToStandardError(), true; };
  return {
      {.names = {"--frame-rate"},
       .value = "N[/D]",
       .purpose = "Frames per second of the video",
       .more = "Without it, what the file states, else 24000/1001.",
       .refusal = "is no rate such as 25, 23.976 or 24000/1001",
       .set = parsedInto(session.frameRate, parseFrameRate)},
      {.names = {"--code-page"},
       .value = "NAME",
       .purpose = "Code page of the text, as ICU names it, or auto for the likeliest",
       .more = "Without it, texts are UTF-8 unless a signature in the file says otherwise; auto "
               "leaves such files and those that are UTF-8 as they are, and says of each file what "
               "it chose.",
       .set = into(session.codePage)},
      {.names = {"--language"},
       .value = "TAG",
       .purpose = "Preferred language: en, en-US",
       .isRare = true,
       .set = into(session.language)},
      {.names = {"--offset"},
       .value = "MS",
       .purpose = "Milliseconds to add to every time; may be negative",
       .refusal = "is no whole number of milliseconds of 32 bits",
       .set = into(session.offsetMs)},
      {.names = {"--plugin"},
       .value = "PATH",
       .purpose = "Plug-in to load instead of the one installed",
       .takesFile = true,
       .isRare = true,
       .set = into(session.plugin)},
      {.names = {"--log"},
       .purpose = "Show the plug-in's log on standard error",
       .isRare = true,
       .set = showLog},
  };
}

}  // namespace

std::vector<Option> withSourceOptions(std::vector<Option> own, SessionOptions& session) {
  std::vector<Option> shared = sessionOptions(session);
  for (Option& option : shared) option.isShared = true;
  session.pluginFolder = pluginsBesideProgram();
  own.insert(own.end(), shared.begin(), shared.end());
  return own;
}

}  // namespace Ombe
