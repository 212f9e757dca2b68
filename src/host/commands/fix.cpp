#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <limits>
#include <nlohmann/json.hpp>
#include <set>

#include "host/cli/common_options.h"
#include "host/fix/fix_file.h"
#include "host/io/failure.h"
#include "host/io/input_file.h"
#include "host/io/json_output.h"
#include "host/io/messages.h"
#include "host/io/output_file.h"
#include "host/text/visible_text.h"

namespace Ombe {
namespace {

namespace fs = std::filesystem;

struct Asked {
  std::vector<std::string> files;
  std::string output = "-";
  bool inPlace = false;
  bool dryRun = false;
  bool json = false;
  FixOptions options;
};

bool endsInSub(const std::string& name) { return name.ends_with(".sub"); }

/// What is wrong with what was asked for; empty for nothing.
std::string objectionTo(const Asked& asked) {
  std::error_code error;
  const bool isFolder = fs::is_directory(asked.output, error) || asked.output.ends_with('/');
  const bool isSpecial =
      fs::exists(asked.output, error) && !fs::is_regular_file(asked.output, error);
  if (asked.inPlace && asked.output != "-") return "--in-place and -o exclude each other";
  const auto& rate = asked.options.session.frameRate;
  constexpr std::uint32_t kMost = std::numeric_limits<std::int32_t>::max();
  if (rate && std::max(rate->numerator, rate->denominator) > kMost)
    return "--frame-rate is too large";
  if (asked.inPlace || asked.dryRun) return {};
  if (asked.files.size() > 1 && !isFolder)
    return "several files need a folder to go to: add -o DIR/";
  if (asked.output == "-") return asked.json ? "--json needs -o, --in-place or --dry-run" : "";
  if (!isFolder && !isSpecial && !endsInSub(asked.output))
    return "the output's name must end in .sub";
  return {};
}

/// Where the mended text of a file goes; empty for nowhere.
std::string outputFor(const std::string& file, const Asked& asked) {
  if (asked.dryRun) return {};
  if (asked.inPlace) return file;
  std::error_code error;
  if (!fs::is_directory(asked.output, error) && !asked.output.ends_with('/')) return asked.output;
  const fs::path name = file == "-" ? fs::path("stdin.sub") : fs::path(file).filename();
  return (fs::path(asked.output) / name).replace_extension(".sub").string();
}

/// Keeps the file under another name and puts the text in its place.
void replaceFile(const std::string& file, const std::string& text) {
  std::error_code error;
  const fs::path target = fs::canonical(file, error);
  const fs::path original = target.string() + ".orig";
  OutputFile output(file);
  output.buffer() = text;
  fs::create_hard_link(target, original, error);
  if (error == std::errc::operation_not_permitted) fs::copy_file(target, original, error);
  if (error) {
    throw Failure(file, Step::kWrite,
                  "cannot be kept as " + original.string() + ": " + error.message());
  }
  try {
    output.commit();
  } catch (const Failure&) {
    fs::remove(original, error);
    throw;
  }
}

class Fixing {
 public:
  explicit Fixing(const Asked& asked)
      : asked_(asked), toldOnErrors_(asked.output == "-" && !asked.dryRun && !asked.inPlace) {}

  ExitCode run() {
    for (const std::string& file : asked_.files) {
      try {
        fix(file);
      } catch (const Failure& failure) {
        if (exitCodeOf(failure) == ExitCode::kNoPlugin) throw;
        fail(file, stepName(failure.step()), failure.reason());
      } catch (const std::exception& error) {
        fail(file, stepName(Step::kRead), error.what());
      }
    }
    report_.commit();
    if (asked_.json) writeJson({{"version", kJsonVersion}, {"files", files_}});
    return code_;
  }

 private:
  void fail(const std::string& file, const char* step, const std::string& reason) {
    code_ = ExitCode::kRefused;
    reportError(file + ": " + reason);
    files_.push_back({{"file", file}, {"error", errorJson(file, step, reason)}});
  }

  void fix(const std::string& file) {
    if (asked_.inPlace && !endsInSub(file) && !file.ends_with(".txt")) {
      throw Failure(file, Step::kWrite, "its name must end in .sub or .txt to be mended in place");
    }
    const InputFile input(file);
    const FixedText fixed = fixFile(input.path(), asked_.options);
    const std::string output = outputFor(file, asked_);
    write(file, output, fixed);
    if (fixed.repair.count(Fate::kDropped) != 0) code_ = ExitCode::kRefused;
    if (asked_.json) {
      addJson(file, output, fixed);
    } else {
      tell(input.name(), fixed);
    }
  }

  void write(const std::string& file, const std::string& path, const FixedText& fixed) {
    if (path.empty() || (asked_.inPlace && fixed.isAsItWas)) return;
    if (asked_.inPlace) return replaceFile(file, fixed.repair.text);
    refuseOverwriting(path);
    std::error_code error;  // what stands in the way is told when the file cannot be written
    if (const fs::path folder = fs::path(path).parent_path(); !folder.empty()) {
      fs::create_directories(folder, error);
    }
    OutputFile output(path);
    output.buffer() = fixed.repair.text;
    output.commit();
  }

  void refuseOverwriting(const std::string& path) {
    if (path == "-") return;
    for (const std::string& file : asked_.files) {
      std::error_code error;
      if (!fs::is_regular_file(path, error) || !fs::equivalent(path, file, error)) continue;
      throw Failure(path, Step::kWrite, "is one of the files to be read: --in-place replaces them");
    }
    if (!written_.insert(path).second) {
      throw Failure(path, Step::kWrite, "was written for another file already");
    }
  }

  void addJson(const std::string& file, const std::string& output, const FixedText& fixed) {
    Json changes = Json::array();
    for (const LineChange& change : fixed.repair.changes) {
      changes.push_back({{"line", change.line},
                         {"fate", fateName(change.fate)},
                         {"what", change.what},
                         {"text", change.text}});
    }
    files_.push_back({{"file", file},
                      {"output", output.empty() ? Json(nullptr) : Json(output)},
                      {"codePage", fixed.codePage},
                      {"opened", fixed.repair.opened},
                      {"subtitles", fixed.repair.subtitles},
                      {"kept", fixed.repair.kept},
                      {"mended", fixed.repair.count(Fate::kMended)},
                      {"left", fixed.repair.count(Fate::kLeft)},
                      {"dropped", fixed.repair.count(Fate::kDropped)},
                      {"changes", std::move(changes)}});
  }

  void tell(const std::string& name, const FixedText& fixed) {
    const auto count = [&](Fate fate) { return std::to_string(fixed.repair.count(fate)); };
    std::string out = name + ": " + fixed.codePage + ", " + std::to_string(fixed.repair.kept) +
                      " lines kept, " + count(Fate::kMended) + " mended, " + count(Fate::kDropped) +
                      " dropped";
    if (fixed.repair.count(Fate::kLeft) != 0)
      out += ", " + count(Fate::kLeft) + " left as they play (--thorough mends them)";
    if (fixed.isLossy)
      out += "; bytes that are no characters of " + fixed.codePage + " became U+FFFD";
    say(out);
    for (const LineChange& change : fixed.repair.changes) {
      std::string line = name + ":" + std::to_string(change.line) + ": " + fateName(change.fate) +
                         ": " + change.what;
      if (!change.text.empty()) line += ": " + change.text;
      say(line);
    }
  }

  /// The text may be on standard output.
  void say(const std::string& line) {
    if (toldOnErrors_) return reportError(line);
    report_.buffer().append(visibleLine(line)).append("\n");
    report_.drain();
  }

  const Asked& asked_;
  const bool toldOnErrors_;
  OutputFile report_{"-", OutputFile::Text::kVisible};  // gets nothing when texts go there
  std::set<std::string> written_;
  Json files_ = Json::array();
  ExitCode code_ = ExitCode::kDone;
};

std::vector<Option> optionsOf(Asked& asked) {
  std::vector<Option> options = withSourceOptions(
      {filesOption(asked.files),
       {.names = {"-o", "--output"},
        .value = "OUT",
        .purpose =
            "File to write, with a name in .sub, or folder for several; - is standard output",
        .initial = asked.output,
        .takesFile = true,
        .set = into(asked.output)},
       {.names = {"--in-place"},
        .purpose = "Replace the files, which stay as NAME.orig",
        .set = into(asked.inPlace)},
       {.names = {"--thorough"},
        .purpose = "Mend also what changes how a file plays that opens as it is",
        .more = "Ends before their starts, second braces that are not closed, control bytes.",
        .set = into(asked.options.thorough)},
       {.names = {"--dry-run"},
        .purpose = "Only tell what would be done",
        .set = into(asked.dryRun)},
       jsonOption(asked.json)},
      asked.options.session);
  // Texts have no language, and times are frames.
  std::erase_if(options, [](const Option& option) {
    return option.names.back() == "--language" || option.names.back() == "--offset";
  });
  return options;
}

ExitCode fixAll(const Asked& asked) {
  if (const std::string objection = objectionTo(asked); !objection.empty()) {
    reportError(objection);
    return ExitCode::kWrongUsage;
  }
  return Fixing(asked).run();
}

}  // namespace

Command fixCommand() {
  const auto asked = std::make_shared<Asked>();
  return {.name = "fix",
          .purpose = "Mend files so that the plug-in opens them, and say what was done",
          .footer = "Example: ombe fix movie.sub -o mended.sub",
          .options = optionsOf(*asked),
          .run = [asked] { return fixAll(*asked); }};
}

}  // namespace Ombe
