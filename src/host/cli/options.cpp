#include "host/cli/options.h"

#include <CLI/CLI.hpp>
#include <cmath>
#include <sstream>

#include "host/cli/completion.h"
#include "host/commands/commands.h"
#include "host/io/messages.h"
#include "host/io/output_file.h"
#include "host/play/player.h"
#include "host/text/number_text.h"
#include "host/writers/subtitle_writer.h"

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
  command
      .add_option(
          "FILE", options.files,
          several ? "Subtitle files; - is standard input" : "Subtitle file; - is standard input")
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

void addColorOrder(CLI::App& command, ColorOrder& order) {
  const auto store = [&order](const std::string& text) {
    order = text == "bgr" ? ColorOrder::kBgr : ColorOrder::kRgb;
  };
  command
      .add_option_function<std::string>("--color-order", store,
                                        "How colours in the file are meant: rgb, as the engine "
                                        "shows them, or bgr, as many players of the format do")
      ->check(CLI::IsMember({"rgb", "bgr"}))
      ->type_name("ORDER");
}

void addExport(CLI::App& app, Options& options) {
  CLI::App& command =
      addCommand(app, options, "export", "Write subtitles in another format", runExport,
                 "ombe export movie.sub --frame-rate 23.976 -o movie.srt\n"
                 "         ombe export -f vtt films/ -o out/");
  command
      .add_option("FILE", options.files, "Subtitle files and folders of them; - is standard input")
      ->required()
      ->type_name("");
  command.add_option("-f,--format", options.writer.format, "Format to write")
      ->check(CLI::IsMember(writerNames()))
      ->capture_default_str()
      ->type_name("FORMAT");
  command
      .add_option("-o,--output", options.output,
                  "File to write, or folder for several; - is standard output")
      ->capture_default_str()
      ->type_name("OUT");
  command.add_option("-j,--jobs", options.jobs, "Files to write at once")
      ->check(CLI::Range(1, 64))
      ->type_name("N");
  command.add_flag("--vtt-style", options.writer.vttStyle,
                   "Write colours that are none of WebVTT's eight in a style block, with which "
                   "ffmpeg 5.1 and mpv 0.35 read no subtitle at all");
  addColorOrder(command, options.writer.colorOrder);
  addSourceOptions(command, options);
}

void addColor(CLI::App& command, Options& options) {
  const auto store = [&options](const std::string& text) {
    options.color = text == "always"  ? ColorMode::kAlways
                    : text == "never" ? ColorMode::kNever
                                      : ColorMode::kAuto;
  };
  command.add_option_function<std::string>("--color", store, "Use colours: auto, always, never")
      ->check(CLI::IsMember({"auto", "always", "never"}))
      ->type_name("WHEN");
}

void addStart(CLI::App& command, PlayOptions& options) {
  const auto store = [&options](const std::string& text) {
    const auto time = parseTime(text);
    if (!time) {
      throw CLI::ValidationError("--start",
                                 "'" + text + "' is no time such as 90, 1:30 or 1:02:03.5");
    }
    options.start = *time;
  };
  command.add_option_function<std::string>("--start", store, "Where to begin")->type_name("TIME");
}

void addSpeed(CLI::App& command, PlayOptions& options) {
  const auto store = [&options](double factor) {
    // As thousandths, it must be at least one and fit where the stream takes it.
    if (!(factor >= 0.001 && factor <= 1e6)) {
      throw CLI::ValidationError("--speed", "must be between 0.001 and 1000000");
    }
    options.speed = static_cast<std::int32_t>(std::lround(factor * Player::kNormalSpeed));
  };
  command.add_option_function<double>("--speed", store, "Times the normal speed: 0.25, 2")
      ->type_name("X");
}

void addPlay(CLI::App& app, Options& options) {
  CLI::App& command = addCommand(app, options, "play", "Play the subtitles in the terminal",
                                 runPlay, "ombe play movie.sub --start 1:30");
  addFile(command, options, false);
  addStart(command, options.play);
  addSpeed(command, options.play);
  command.add_flag_callback(
      "--no-interactive", [&options] { options.play.interactive = false; },
      "Print lines, without keys");
  addColor(command, options);
  addColorOrder(command, options.play.colorOrder);
  addSourceOptions(command, options);
}

void addCheck(CLI::App& app, Options& options) {
  CLI::App& command =
      addCommand(app, options, "check", "Say whether files will play, and if not, why and where",
                 runCheck, "ombe check movie.sub --code-page windows-1250");
  addFile(command, options, true);
  command.add_option("--limit", options.limit, "Findings of a kind to show; 0 shows all")
      ->capture_default_str()
      ->check(CLI::Range(0, 1000000000))
      ->type_name("N");
  command.add_flag("--json", options.json, "Write JSON");
  addColor(command, options);
  addSourceOptions(command, options);
}

void addInspect(CLI::App& app, Options& options) {
  CLI::App& command = addCommand(app, options, "inspect", "Show what a plug-in says of itself",
                                 runInspect, "ombe inspect ./microdvd.so --json");
  command.add_option("PLUGIN", options.session.plugin, "Plug-in, or folder that it is in")
      ->type_name("");
  command.add_flag("--json", options.json, "Write JSON");
}

void addCompletion(CLI::App& app, Options& options) {
  CLI::App& command = addCommand(
      app, options, "completion", "Write the script by which a shell completes ombe", runCompletion,
      "ombe completion bash >~/.local/share/bash-completion/completions/ombe");
  command.add_option("SHELL", options.shell, "Shell")
      ->required()
      ->check(CLI::IsMember(completionShells()))
      ->type_name("");
}

/// For the build, so it is not shown.
void addMan(CLI::App& app, Options& options) {
  addCommand(app, options, "man", "Write the manual page", runMan, "ombe man | man -l -").group("");
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
  addPlay(*app, options);
  addCheck(*app, options);
  addInspect(*app, options);
  addCompletion(*app, options);
  addMan(*app, options);
  return app;
}

std::optional<ExitCode> parseCommandLine(int argc, char** argv, Options& options) {
  const std::unique_ptr<CLI::App> app = makeCommandLine(options);
  try {
    app->parse(argc, argv);
    return std::nullopt;
  } catch (const CLI::ParseError& end) {
    if (end.get_exit_code() == 0) {
      std::ostringstream text;
      app->exit(end, text, text);
      OutputFile output("-");
      output.buffer() = std::move(text).str();
      output.commit();
      return ExitCode::kDone;
    }
    reportError(end.what(), "Run with --help for more information.");
    return ExitCode::kWrongUsage;
  }
}

}  // namespace Ombe
