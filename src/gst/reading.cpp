#include "gst/reading.h"

#include <dlfcn.h>

#include <algorithm>
#include <filesystem>

#include "gst/head.h"
#include "host/check/check.h"
#include "host/io/failure.h"
#include "host/io/input_file.h"
#include "host/text/code_page.h"
#include "host/text/visible_text.h"

namespace Ombe {
namespace {

bool isSet(Ratio rate) { return rate.numerator != 0 && rate.denominator != 0; }

/// "../ombe" as seen from this library.
std::string pluginsBesideElements() {
  Dl_info place{};
  if (::dladdr(reinterpret_cast<void*>(&pluginFor), &place) == 0) return {};
  const auto elements = std::filesystem::path(place.dli_fname).parent_path();
  return (elements.parent_path() / "ombe").string();
}

SessionOptions optionsFor(std::string_view content, const ReadingSettings& settings) {
  SessionOptions options;
  options.plugin = pluginFor(settings);
  if (!settings.codePage.empty()) options.codePage = settings.codePage;
  // Only a rate of the user's makes the plug-in pass over what the file states.
  if (isSet(settings.frameRate)) {
    options.frameRate = settings.frameRate;
  } else if (isSet(settings.videoRate) && !statesFrameRate(content)) {
    options.frameRate = settings.videoRate;
  }
  return options;
}

/// Why the plug-in refuses a file, in the words of `ombe check`.
std::string reasons(const std::string& path, const SessionOptions& options) {
  constexpr std::size_t kOfEachKind = 3;
  std::string text;
  const CheckReport report = checkFile(path, options, kOfEachKind);
  for (const Finding& finding : report.findings.kept()) {
    if (severityOf(finding.kind) != Severity::kError) continue;
    if (!text.empty()) text += "; ";
    if (finding.line != 0) text += "line " + std::to_string(finding.line) + ": ";
    text += report.findings.message(finding);
  }
  return visibleLine(text);
}

CueList takeAll(Session& session, std::string_view content) {
  // A guess: a file of blank lines has far fewer subtitles, and must not fail for want of room.
  constexpr std::ptrdiff_t kMostAhead = 1 << 21;
  CueList cues;
  const auto lines = std::min(std::ranges::count(content, '\n') + 1, kMostAhead);
  cues.reserve(static_cast<std::size_t>(lines), content.size());
  session.readToEnd([&cues](const Chunk& chunk) {
    const std::int64_t start = chunk.timestamp();
    cues.add(start, start + static_cast<std::int32_t>(chunk.duration()), chunk.text());
  });
  cues.cut();
  return cues;
}

}  // namespace

std::string pluginFor(const ReadingSettings& settings) {
  return findPlugin(settings.plugin, pluginsBesideElements());
}

CueList readCues(std::string_view content, const ReadingSettings& settings,
                 const std::function<void(const std::string&)>& warn) {
  SessionOptions options = optionsFor(content, settings);
  if (options.codePage && !isKnownCodePage(*options.codePage)) {
    warn("unknown subtitle encoding '" + visibleLine(*options.codePage) +
         "': texts are taken as UTF-8");
    options.codePage.reset();
  }
  Session session(options);
  const InputFile file = InputFile::holding(content);
  try {
    session.open(file.path());
  } catch (const Failure& failure) {
    const bool isRefused = failure.step() == Step::kProbe || failure.step() == Step::kOpen;
    throw Failure(failure.step(), isRefused ? reasons(file.path(), options) : failure.reason());
  }
  return takeAll(session, content);
}

}  // namespace Ombe
