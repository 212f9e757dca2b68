#include "host/fix/fix_file.h"

#include <filesystem>
#include <utility>

#include "host/check/check.h"
#include "host/check/passes.h"
#include "host/fix/decoding.h"
#include "host/io/failure.h"
#include "host/text/garbled_texts.h"
#include "ombe_core/subtitle_settings.h"

namespace Ombe {
namespace {

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
  if (std::filesystem::file_size(path) > kLargestFile) {
    throw Failure(path, Step::kRead, "is larger than the plug-in reads");
  }
  return readBytes(path, kLargestFile);
}

/// What a file seems to be that is not mended; empty for no idea, and for one that begins well.
std::string otherKind(std::string_view bytes) {
  constexpr std::size_t kHead = 1024;  // bytes that tell
  return bytes.starts_with('{') ? "" : looksOf(bytes.substr(0, kHead));
}

}  // namespace

FixedText fixFile(const std::string& path, const FixOptions& options) {
  const std::string codePage = codePageOf(path, options.session);
  const std::string bytes = readWhole(path);
  DecodedText decoded = decodeBytes(bytes, codePage);
  if (decoded.isUnknown) {
    if (const std::string other = otherKind(bytes); !other.empty())
      throw Failure(path, Step::kProbe, other);
    throw Failure(path, Step::kConvert, "is not UTF-8: " + codePageAdvice(decoded.likely));
  }
  FixedText fixed{decoded.codePage, decoded.isLossy, false, {}};
  RepairOptions repairOptions{{}, options.thorough};
  if (const auto& rate = options.session.frameRate) {
    repairOptions.rate = {rate->numerator, rate->denominator};
  }
  fixed.repair = repair(std::move(decoded.text), repairOptions);
  if (fixed.repair.text.empty()) {
    const std::string other = otherKind(bytes);
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
