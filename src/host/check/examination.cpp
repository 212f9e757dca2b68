#include "host/check/examination.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <utility>

#include "host/check/foreign_format.h"
#include "host/check/line_walker.h"
#include "host/io/failure.h"
#include "host/session/source.h"
#include "host/text/code_page.h"
#include "host/text/visible_text.h"
#include "ombe_core/subtitle_settings.h"

namespace Ombe {
namespace {

using Times = std::vector<std::pair<std::uint32_t, std::uint32_t>>;  // start and duration

// What one read gives at most on Linux, and a plug-in reads a file with one.
constexpr std::uintmax_t kLargestFile = 0x7FFFF000;
// More of a file that is none is not looked at.
constexpr std::uintmax_t kLargestForeign = std::uintmax_t{64} << 20;

std::string startOf(const std::string& path, std::uintmax_t size) {
  std::string bytes(static_cast<std::size_t>(size), '\0');
  std::ifstream in(path, std::ios::binary);
  if (!in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()))) {
    throw Failure(path, Step::kRead, "could not be read to its end");
  }
  return bytes;
}

class Examination {
 public:
  Examination(const std::string& file, const std::string& path, const SessionOptions& options,
              std::size_t limit)
      : path_(path), options_(options) {
    options_.offsetMs = 0;
    report_.file = file;
    report_.findings = Findings(limit);
  }

  CheckReport run() {
    Session session(options_);
    try {
      if (!session.probe(path_)) {
        report_.step = "probe";
      } else {
        report_.step = "open";
        session.open(path_);
        session.readToEnd([this](const Chunk& chunk) {
          delivered_.emplace_back(chunk.timestamp(), chunk.duration());
        });
        report_.step.clear();
      }
    } catch (const Failure& failure) {
      report_.step = stepName(failure.step());
      if (report_.step != "open") add("failure", failure.reason());
    }
    report_.opens = report_.step.empty();
    report_.subtitles = delivered_.size();
    if (report_.opens || report_.step == "probe" || report_.step == "open") explain(session);
    return std::move(report_);
  }

 private:
  void add(const char* kind, std::string message, Severity severity = Severity::kError) {
    report_.findings.add({severity, kind, 0, std::move(message), {}});
  }

  void explain(Session& session) {
    checkName();
    const std::uintmax_t size = std::filesystem::file_size(path_);
    const bool isForeign = report_.step == "probe";
    if (size > kLargestFile) add("size", "is larger than the plug-in reads (2 GiB less 4 KiB)");
    if (size > kLargestFile && !isForeign) return;
    const std::string bytes = startOf(path_, isForeign ? std::min(size, kLargestForeign) : size);
    const std::string text = decoded(bytes, session.controller());
    if (isForeign) {
      explainUnrecognised(bytes, text);
    } else {
      explainLines(bytes, text);
    }
    if (!report_.opens && report_.findings.count(Severity::kError) == 0) {
      add("unexplained", "the plug-in refuses it, and nothing found here says why: see --log");
    }
  }

  /// Recognising pays no heed to the name, opening does.
  void checkName() {
    const std::string uri = sourceUri(path_);
    const std::size_t dot = uri.rfind('.');
    const std::string extension = dot == std::string::npos ? "" : uri.substr(dot);
    if (extension == ".sub" || extension == ".txt") return;
    add("extension", "its name must end in .sub or .txt, in lower case: rename it");
  }

  /// The text as the plug-in splits it: decoded when the plug-in found a signature, else the bytes.
  std::string decoded(const std::string& bytes, HostController& settings) {
    SettingValue value;
    const bool found = settings.getValue(autodetectedSetting(), value) &&
                       value.asBoolean().value_or(false) &&
                       settings.getValue(codePageSetting(), value) && value.asString() != nullptr;
    report_.hasSignature = found;
    if (!found) {
      report_.codePage = options_.codePage.value_or("");
      return bytes;
    }
    report_.codePage = std::string(view(*value.asString()));
    std::string text = textFrom(bytes);
    constexpr std::string_view kSignature = "\uFEFF";
    if (text.starts_with(kSignature)) text.erase(0, kSignature.size());
    return text;
  }

  std::string textFrom(const std::string& bytes) {
    if (!isKnownCodePage(report_.codePage)) return bytes;
    if (auto text = CodePageReader(report_.codePage).read(bytes)) return std::move(*text);
    add("code-page", "holds bytes that are no characters of " + report_.codePage,
        Severity::kWarning);
    return visibleText(bytes);
  }

  void explainUnrecognised(const std::string& bytes, const std::string& text) {
    if (const std::string_view format = foreignFormat(bytes); !format.empty()) {
      return add("foreign-format", std::string(format));
    }
    LineWalker lines(text);
    if (!lines.next()) return add("foreign-format", "holds no line that is not empty");
    Findings first;
    checkLines(std::string(lines.line()), {}, {}, first);
    if (first.count("bad-line") == 0) return;
    addBadLine(lines.line(), lines.number(), report_.findings);
  }

  void explainLines(const std::string& bytes, const std::string& text) {
    FrameRate user;
    if (options_.frameRate) user = {options_.frameRate->numerator, options_.frameRate->denominator};
    const LineCheck lines =
        checkLines(text, user, report_.hasSignature ? "" : report_.codePage, report_.findings);
    report_.rate = lines.rate;
    if (const std::size_t nul = text.find('\0'); nul != std::string::npos) addNul(text, nul);
    if (bytes.empty()) add("foreign-format", "is empty");
    if (report_.opens) compare(lines.subtitles);
  }

  void addNul(const std::string& text, std::size_t at) {
    if (const std::string_view format = foreignFormat(text); !report_.opens && !format.empty()) {
      add("foreign-format", std::string(format));
    }
    const auto lines =
        std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(at), '\n');
    report_.findings.add({Severity::kWarning,
                          "nul",
                          static_cast<std::uint64_t>(lines) + 1,
                          "holds a NUL byte: the plug-in reads no further",
                          {}});
  }

  /// What the plug-in delivered decides; that it agrees with the explanation is not taken for
  /// granted.
  void compare(const std::vector<TimedLine>& subtitles) {
    Times expected;
    for (const TimedLine& line : subtitles)
      expected.emplace_back(line.start, line.end - line.start);
    std::sort(expected.begin(), expected.end());
    std::sort(delivered_.begin(), delivered_.end());
    if (expected == delivered_ && report_.findings.count(Severity::kError) == 0) return;
    add("disagreement",
        "the plug-in plays it with other subtitles or times than its lines say; what is said of "
        "lines and rate may not hold",
        Severity::kWarning);
  }

  const std::string& path_;
  SessionOptions options_;
  CheckReport report_;
  Times delivered_;
};

}  // namespace

CheckReport examine(const std::string& file, const std::string& path, const SessionOptions& options,
                    std::size_t limit) {
  return Examination(file, path, options, limit).run();
}

}  // namespace Ombe
