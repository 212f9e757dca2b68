#include "host/fix/fix_file.h"

#include <filesystem>
#include <fstream>
#include <utility>

#include "host/fix/decoding.h"
#include "host/io/failure.h"
#include "host/text/garbled_texts.h"
#include "ombe_core/subtitle_settings.h"

namespace Ombe {
namespace {

// What one read gives at most on Linux, and a plug-in reads a file with one.
constexpr std::uintmax_t kLargestFile = 0x7FFFF000;

/// What the plug-in found in the file itself, else what a person says; empty for none.
std::string codePageOf(const std::string& path, const SessionOptions& options) {
  Session session(options);
  session.probe(path);  // whatever it answers, it has looked for a signature
  SettingValue value;
  const bool isFound = session.controller().getValue(autodetectedSetting(), value) &&
                       value.asBoolean().value_or(false) &&
                       session.controller().getValue(codePageSetting(), value) &&
                       value.asString() != nullptr;
  return isFound ? std::string(view(*value.asString())) : options.codePage.value_or("");
}

std::string readWhole(const std::string& path) {
  const std::uintmax_t size = std::filesystem::file_size(path);
  if (size > kLargestFile) throw Failure(path, Step::kRead, "is larger than the plug-in reads");
  std::string bytes(static_cast<std::size_t>(size), '\0');
  std::ifstream in(path, std::ios::binary);
  if (!in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()))) {
    throw Failure(path, Step::kRead, "could not be read to its end");
  }
  return bytes;
}

/// What a file seems to be that is not mended; empty for no idea.
std::string_view otherKind(std::string_view bytes) {
  using std::string_view_literals::operator""sv;
  constexpr std::size_t kHead = 1024;  // bytes that tell
  const std::string_view head = bytes.substr(0, kHead);
  if (head.starts_with("\x00\x00\x01\xBA"sv)) return "is VobSub: pictures, not text";
  if (head.find("WEBVTT") < 4) return "is WebVTT, not MicroDVD";
  if (head.find("[Script Info]") < 4) return "is SubStation Alpha, not MicroDVD";
  if (head.find(" --> ") != std::string_view::npos) return "is SubRip, not MicroDVD";
  const bool isBinary = head.find('\0') != std::string_view::npos && head.front() != '{';
  if (isBinary) return "is binary, not text";
  return {};
}

}  // namespace

FixedText fixFile(const std::string& path, const FixOptions& options) {
  const std::string codePage = codePageOf(path, options.session);
  const std::string bytes = readWhole(path);
  DecodedText decoded = decodeBytes(bytes, codePage);
  const std::string other(otherKind(bytes));
  if (decoded.isUnknown && !other.empty()) throw Failure(path, Step::kProbe, other);
  if (decoded.isUnknown) {
    throw Failure(path, Step::kConvert, "is not UTF-8: " + codePageAdvice(decoded.likely));
  }
  FixedText fixed{decoded.codePage, decoded.isLossy, false, {}};
  RepairOptions repairOptions{{}, options.thorough};
  if (const auto& rate = options.session.frameRate) {
    repairOptions.rate = {rate->numerator, rate->denominator};
  }
  fixed.repair = repair(std::move(decoded.text), repairOptions);
  if (fixed.repair.text.empty()) {
    throw Failure(path, Step::kProbe,
                  other.empty() ? "holds no line of the form {first}{last}text" : other);
  }
  if (repairOptions.rate.isSet()) {
    fixed.repair.text = withHeader(fixed.repair.text, repairOptions.rate);
  }
  fixed.isAsItWas = fixed.repair.text == bytes;
  return fixed;
}

}  // namespace Ombe
