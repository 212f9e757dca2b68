#include "host/options.h"

#include <CLI/CLI.hpp>
#include <iostream>

#include "host/commands/commands.h"
#include "host/frame_rate.h"
#include "host/messages.h"
#include "host/subtitle_writer.h"

namespace Ombe {
namespace {

void addFrameRate(CLI::App& command, SessionOptions& options) {
  const auto store = [&options](const std::string& text) {
    options.frameRate = parseFrameRate(text);
    if (!options.frameRate) {
      throw CLI::ValidationError("--frame-rate",
                                 "'" + text + "' is no rate such as 25, 23.976 or 24000/1001");
    }
  };
  command.add_option_function<std::string>("--frame-rate", store, "Frames per second of the video")
      ->type_name("N[/D]");
}

/// Options of every command that meets a source.
void addSourceOptions(CLI::App& command, Options& options) {
  SessionOptions& session = options.session;
  addFrameRate(command, session);
  command.add_option("--code-page", session.codePage, "Code page of the text, as ICU names it")
      ->type_name("NAME");
  command.add_option("--language", session.language, "Preferred language: en, en-US")
      ->type_name("TAG");
  command.add_option("--offset", session.offsetMs, "Milliseconds to add to every time")
      ->type_name("MS");
  command.add_option("--plugin", session.plugin, "Plug-in to load instead of the one installed")
      ->type_name("PATH");
  command.add_flag("--log", options.log, "Show the plug-in's log on standard error");
}

CLI::App& addCommand(CLI::App& app, Options& options, const char* name, const char* purpose,
                     ExitCode (*run)(const Options&), const char* example) {
  CLI::App* command = app.add_subcommand(name, purpose);
  command->footer(std::string("Example: ") + example);
  command->final_callback([&options, run] { options.run = run; });
  return *command;
}

void addFile(CLI::App& command, Options& options, bool several) {
  command.add_option("FILE", options.files, several ? "Subtitle files" : "Subtitle file")
      ->required()
      ->type_name("")
      ->expected(1, several ? CLI::detail::expected_max_vector_size : 1);
}

void addProbe(CLI::App& app, Options& options) {
  CLI::App& command = addCommand(app, options, "probe", "Say which files are MicroDVD", runProbe,
                                 "ombe probe *.sub *.txt");
  addFile(command, options, true);
  addSourceOptions(command, options);
}

void addInfo(CLI::App& app, Options& options) {
  CLI::App& command =
      addCommand(app, options, "info", "Show what the plug-in says of itself and of a file",
                 runInfo, "ombe info movie.sub --json");
  addFile(command, options, false);
  command.add_flag("--json", options.json, "Write JSON");
  addSourceOptions(command, options);
}

void addExport(CLI::App& app, Options& options) {
  CLI::App& command =
      addCommand(app, options, "export", "Write the subtitles of a file in another format",
                 runExport, "ombe export movie.sub --frame-rate 23.976 -o movie.srt");
  addFile(command, options, false);
  command.add_option("-f,--format", options.format, "Format to write")
      ->check(CLI::IsMember(writerNames()))
      ->capture_default_str()
      ->type_name("FORMAT");
  command.add_option("-o,--output", options.output, "File to write; - is standard output")
      ->capture_default_str()
      ->type_name("OUT");
  addSourceOptions(command, options);
}

}  // namespace

std::unique_ptr<CLI::App> makeCommandLine(Options& options) {
  auto app = std::make_unique<CLI::App>(
      "Shows and converts subtitle files through the plug-ins of the Ombe engine.", "ombe");
  app->set_version_flag("--version", "ombe " OMBE_VERSION);
  app->require_subcommand(1);
  app->footer("Example: ombe export movie.sub -o movie.srt\nMore: ombe COMMAND --help");
  addProbe(*app, options);
  addInfo(*app, options);
  addExport(*app, options);
  return app;
}

std::optional<ExitCode> parseCommandLine(int argc, char** argv, Options& options) {
  const std::unique_ptr<CLI::App> app = makeCommandLine(options);
  try {
    app->parse(argc, argv);
    return std::nullopt;
  } catch (const CLI::ParseError& end) {
    if (end.get_exit_code() == 0) {
      app->exit(end, std::cout, std::cerr);
      return ExitCode::kDone;
    }
    reportError(std::string(end.what()) + "\nRun with --help for more information.");
    return ExitCode::kWrongUsage;
  }
}

}  // namespace Ombe
