// Whether the plug-in takes a file, and why.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/check/findings.h"
#include "host/io/failure.h"
#include "host/session/session.h"
#include "microdvd/lines/frame_rate.h"

namespace Ombe {

class InputFile;
class JsonWriter;
class OutputFile;

/// Where a frame rate comes from; nowhere when no line needed one.
enum class RateSource { kNone, kUser, kHeader, kDefault };

/// The rate that the times are counted with.
struct RateUse {
  FrameRate rate;
  RateSource source = RateSource::kNone;
  std::uint32_t line = 0;  ///< of the header
};

struct CheckReport {
  std::string file;                           ///< as a person named it
  std::optional<Step> failed = std::nullopt;  ///< what the file did not get through
  bool isMicroDVD = false;  ///< the plug-in reads MicroDVD, so its lines could be explained
  std::uint64_t subtitles = 0;
  RateUse rate;
  std::string codePage;                      ///< in use; empty for UTF-8
  bool hasSignature = false;                 ///< the file itself states its code page
  std::optional<CodePageChoice> choice;      ///< how it was chosen, if that was asked for
  std::vector<std::string> likelyCodePages;  ///< for texts that are no UTF-8
  Findings findings;                         ///< in the order of their lines

  [[nodiscard]] bool opens() const { return !failed; }
};

/// Asks the plug-in, whose answer decides, reads the file (as InputFile takes its name) as the
/// plug-in does, and explains the answer. Whatever goes wrong with the file is in the report.
/// Throws Failure only when the plug-in cannot be loaded.
CheckReport checkFile(const std::string& name, const SessionOptions& options, std::size_t limit);

/// A report on what could not be looked at.
CheckReport unreadable(const std::string& name, const std::string& reason);

/// Opens the input in a session of these options. Throws Failure, with what a check finds to be the
/// reason where the plug-in did not recognise or open it.
void openExplained(Session& session, const InputFile& input, const SessionOptions& options);

/// "try --code-page A, B or C", or what to do when nothing is likely.
std::string codePageAdvice(const std::vector<std::string>& likely);

/// What a file looks like that is not recognised, by its first bytes; empty for no idea.
std::string looksOf(std::string_view head);

/// Lines for people, made visible: the verdict, then what was found.
void writeText(const CheckReport& report, bool colored, OutputFile& out);
/// The same for programs, as an element.
void writeJson(const CheckReport& report, JsonWriter& out);

}  // namespace Ombe
