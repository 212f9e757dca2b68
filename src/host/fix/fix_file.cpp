#include "host/fix/fix_file.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <system_error>
#include <utility>

#include "host/check/check.h"
#include "host/check/fitted_times.h"
#include "host/fix/decoding.h"
#include "host/io/descriptor_io.h"
#include "host/io/failure.h"
#include "host/io/output_file.h"
#include "host/session/source.h"
#include "host/text/likely_code_pages.h"

namespace Ombe {
namespace {

namespace fs = std::filesystem;

/// What the plug-in found in the file itself, else what a person says; empty for none. A choice
/// that was asked for is in `choice`.
std::string codePageOf(const std::string& path, const SessionOptions& options,
                       std::optional<CodePageChoice>& choice) {
  Session session(options);
  session.probe(path);  // whatever it answers, it has looked for a signature
  choice = session.codePageChoice();
  std::string stated = session.signedCodePage();
  return !stated.empty() || choice ? stated : options.codePage.value_or("");
}

std::string readWhole(const std::string& path) {
  if (fs::file_size(path) > kLargestFile) {
    throw Failure(path, Step::kRead, "is larger than the plug-in reads");
  }
  return readFile(path, kLargestFile);
}

/// What a file seems to be that is not mended; empty for no idea, and for one that begins well.
std::string otherKind(std::string_view bytes) {
  constexpr std::size_t kHead = 1024;  // bytes that tell
  return bytes.starts_with('{') ? "" : looksOf(bytes.substr(0, kHead));
}

std::int64_t nearestFrame(double frame) {
  constexpr double kFar = 1e15;  // beyond every frame number
  return std::llround(std::clamp(frame, -kFar, kFar));
}

/// What a rate that a person knows, and points, come to for the text; nothing without both.
std::optional<Retiming> retimingFor(const std::string& path, std::string_view text,
                                    const std::vector<SyncPoint>& points, FrameRate known) {
  FrameRate rate = known.isSet() ? known : statedRate(text);
  if (points.empty()) return known.isSet() ? std::optional(Retiming{rate}) : std::nullopt;
  if (!rate.isSet()) rate = kDefaultFrameRate;
  const double before = rate.perSecond();
  if (points.size() == 2) {
    const auto timing = timingFor(points.front(), points.back(), before);
    if (!timing)
      throw Failure(path, Step::kDeliver,
                    "its frame rate and the points make none that can be set");
    rate = chosenRate(timing->rate);
  }
  double frames = 0;
  for (const SyncPoint& point : points)
    frames += (point.to * rate.perSecond() - point.from * before) / 1000;
  return Retiming{rate, nearestFrame(frames / static_cast<double>(points.size()))};
}

}  // namespace

FixedText fixFile(const std::string& path, const FixOptions& options) {
  std::optional<CodePageChoice> choice;
  const std::string codePage = codePageOf(path, options.session, choice);
  const std::string bytes = readWhole(path);
  DecodedText decoded =
      decodeBytes(bytes, codePage, choice && choice->isGuess() ? choice->codePage : "");
  if (decoded.codePage.empty()) {
    if (const std::string other = otherKind(bytes); !other.empty())
      throw Failure(path, Step::kProbe, other);
    throw Failure(path, Step::kConvert, "is not UTF-8: " + codePageAdvice(likelyCodePages(bytes)));
  }
  // The signature is what text of 16 bits a character lacks, so it was chosen among the others.
  const bool isWide = codePage.empty() && decoded.codePage.starts_with("UTF-16");
  if (isWide) choice.reset();
  FixedText fixed{decoded.codePage, std::move(choice), decoded.isLossy, false, {}, {}};
  const auto& chosen = options.times.rate ? options.times.rate : options.session.frameRate;
  const RepairOptions repairOptions{chosenRate(chosen), options.thorough};
  const std::string other = otherKind(decoded.text);
  fixed.repair = repair(std::move(decoded.text), repairOptions);
  if (fixed.repair.text.empty()) {
    throw Failure(path, Step::kProbe,
                  other.empty() ? "holds no line of the form {first}{last}text" : other);
  }
  fixed.retiming = retimingFor(path, fixed.repair.text, options.times.points, repairOptions.rate);
  if (fixed.retiming) retime(fixed.repair, *fixed.retiming);
  fixed.isAsItWas = fixed.repair.text == bytes;
  return fixed;
}

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

}  // namespace Ombe
