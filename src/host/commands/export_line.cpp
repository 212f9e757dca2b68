#include "host/commands/export_line.h"

#include <fmt/core.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "host/fix/repair.h"
#include "host/text/number_text.h"
#include "host/text/visible_text.h"

namespace Ombe {
namespace {

bool isPlain(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
         std::string_view("_-./:=,+@%").find(c) != std::string_view::npos;
}

/// The word for a shell; bytes that would act on a terminal as $'\033', which bash and zsh read.
std::string quoted(const std::string& word) {
  if (!word.empty() && std::all_of(word.begin(), word.end(), isPlain)) return word;
  const bool acts = visibleLine(word) != word || word.find('\t') != std::string::npos;
  std::string result = acts ? "$'" : "'";
  for (const char c : word) {
    const auto byte = static_cast<unsigned char>(c);
    if (acts && (c == '\'' || c == '\\')) {
      result.append("\\").append(1, c);
    } else if (acts && (byte < ' ' || byte > '~')) {
      result += fmt::format("\\{:03o}", byte);
    } else {
      result += c == '\'' ? "'\\''" : std::string(1, c);
    }
  }
  return result + "'";
}

/// Points that ask for just that rate and offset: as near to 0 as they can be, and far away.
std::string syncWords(double fileRate, double rate, double offset) {
  constexpr double kFar = 36000000;  // 10 hours
  constexpr double kLast = std::numeric_limits<std::uint32_t>::max();
  const double stretch = fileRate / rate;
  const auto word = [stretch, offset](double from) {
    const double to = std::max(0.0, std::round(from * stretch) + offset);
    return fmt::format(" --sync {}={}", timeText(static_cast<std::int64_t>(from)),
                       timeText(static_cast<std::int64_t>(to)));
  };
  const double first = offset < 0 ? std::ceil(-offset / stretch) : 0;
  const double last = std::min({first + kFar, kLast, (kLast - offset) / stretch});
  return word(first) + word(std::floor(last));
}

/// A rate among the options goes before a header of the file, which then is a subtitle. So where
/// there is a header, and it was no subtitle, points have to do.
std::string timeWords(const Played& played, const Found& found) {
  const bool wasAsked = chosenRate(played.session.frameRate).isSet();
  if (!wasAsked && found.rate.isSet() && played.fileRate && played.fileRate->isStated)
    return syncWords(played.fileRate->rate.perSecond(), found.rate.perSecond(), found.offsetMs);
  // With a rate that was asked for, the plug-in has read no header.
  const FrameRate rate = found.rate.isSet() || !wasAsked ? found.rate : kDefaultFrameRate;
  std::string words;
  if (rate.isSet()) words = " --frame-rate " + headerText(rate);
  if (found.offsetMs != 0) words += fmt::format(" --offset {}", found.offsetMs);
  return words;
}

}  // namespace

Found Found::of(Session& session) {
  Found found;
  HostController& settings = session.controller();
  found.offsetMs = static_cast<std::int32_t>(session.host().getTimeOffset());
  if (const FrameRate set = chosenRate(settings.frameRate()); set.isSet()) found.rate = set;
  if (!settings.isAutodetected()) found.codePage = settings.codePage();
  return found;
}

std::string exportLine(const Played& played, const Found& found) {
  const bool isLikeOption = played.file.size() > 1 && played.file.starts_with('-');
  std::string line = "ombe export " + quoted((isLikeOption ? "./" : "") + played.file);
  line += timeWords(played, found);
  const auto add = [&line](const char* option, const std::string& value) {
    if (!value.empty()) line += std::string(" ") + option + " " + quoted(value);
  };
  add("--code-page", found.codePage);
  add("--color-order", played.colorOrder == ColorOrder::kBgr ? "bgr" : "");
  add("--language", played.session.language);
  add("--plugin", played.session.plugin);
  return line + "\n";
}

}  // namespace Ombe
