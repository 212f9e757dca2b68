#include "host/check/check.h"

#include <exception>
#include <filesystem>
#include <new>

#include "host/check/fitted_times.h"
#include "host/check/passes.h"
#include "host/io/descriptor_io.h"
#include "host/io/failure.h"
#include "host/io/input_file.h"
#include "host/session/source.h"

namespace Ombe {
namespace {

// More of a file that is not recognised is not looked at.
constexpr std::uintmax_t kLargestUnrecognised = std::uintmax_t{64} << 20;

void describe(Session& session, Answer& answer) {
  answer.hasSignature = !session.signedCodePage().empty();
  answer.choice = session.codePageChoice();
  answer.codePage = session.controller().codePage();
  answer.isMicroDVD = session.container().findMediaTypeRank(toByteString("text/x-sub")) >= 0;
}

/// Recognising pays no heed to the name, opening does.
bool hasSubtitleName(const std::string& path) {
  const std::string uri = sourceUri(path);
  return uri.ends_with(".sub") || uri.ends_with(".txt");
}

/// Whether every byte behind the signature is a character.
bool isWhole(std::string_view bytes, const std::string& codePage) {
  if (!isKnownCodePage(codePage)) return true;  // nothing to ask
  return CodePageReader(codePage).reads(bytes.substr(signatureLength(bytes)));
}

/// The text that the plug-in splits into lines: decoded where it found a signature, else the bytes.
std::string textOf(std::string bytes, const Answer& answer, Findings& findings) {
  if (!answer.hasSignature) return bytes;
  if (!isWhole(bytes, answer.codePage)) findings.add({Kind::kDamagedText}, answer.codePage);
  auto text = decodedText(bytes, answer.codePage);
  return text ? std::move(*text) : bytes.substr(signatureLength(bytes));
}

void explain(const std::string& path, const Answer& answer, const SessionOptions& options,
             CheckReport& report) {
  Findings& findings = report.findings;
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(path.c_str(), error);
  const bool isTooLarge = !error && size > kLargestFile && answer.isMicroDVD;
  if (!answer.reason.empty() && !isTooLarge) {
    return findings.add({Kind::kFailure}, answer.reason);
  }
  if (!answer.isMicroDVD) {
    if (answer.failed) findings.add({Kind::kOtherPlugin});
    return;
  }
  if (!hasSubtitleName(path)) findings.add({Kind::kExtension});
  const bool isRecognised = answer.failed != Step::kProbe;
  if (isTooLarge) findings.add({Kind::kSize});
  if (!isRecognised) {
    explainUnrecognised(readFile(path, kLargestUnrecognised), answer, findings);
  } else if (!isTooLarge) {
    std::string bytes = readFile(path, size);
    if (answer.failed && !answer.hasSignature && isWide(bytes)) findings.add({Kind::kWide});
    findings.setText(textOf(std::move(bytes), answer, findings));
    checkLines(answer, chosenRate(options.frameRate), report);
  }
  if (answer.failed && !findings.has(Severity::kError)) findings.add({Kind::kUnexplained});
}

void check(const InputFile& input, const SessionOptions& options, CheckReport& report) {
  const Answer answer = askPlugin(input.path(), options);
  report.failed = answer.failed;
  report.isMicroDVD = answer.isMicroDVD;
  report.subtitles = answer.times.count;
  report.codePage = answer.codePage;
  report.hasSignature = answer.hasSignature;
  report.choice = answer.choice;
  explain(input.path(), answer, options, report);
}

/// The failure with its reason, for which the input is read again.
Failure explained(const Failure& failure, const InputFile& input, const SessionOptions& options) {
  if (failure.step() != Step::kProbe && failure.step() != Step::kOpen) return failure;
  CheckReport report;
  report.findings = Findings(1);  // of each kind
  check(input, options, report);
  if (!report.findings.has(Severity::kError)) return failure;  // the file has changed since
  report.findings.sort();
  return {input.name(), failure.step(),
          (failure.step() == Step::kProbe ? "not recognised: " : "could not be opened: ") +
              report.findings.firstError()};
}

}  // namespace

Answer askPlugin(const std::string& path, const SessionOptions& options) {
  Answer answer;
  SessionOptions own = options;
  own.offsetMs = 0;
  Session session(own);
  try {
    const bool isRecognised = session.probe(path);
    describe(session, answer);
    if (!isRecognised) {
      answer.failed = Step::kProbe;
      return answer;
    }
    session.open(path);
    session.readToEnd(
        [&answer](const Chunk& chunk) { answer.times.add(chunk.timestamp(), chunk.duration()); });
  } catch (const Failure& failure) {
    answer.failed = failure.step();
    if (failure.step() != Step::kOpen) answer.reason = failure.reason();
  }
  return answer;
}

CheckReport unreadable(const std::string& name, const std::string& reason) {
  CheckReport report;
  report.file = name;
  report.failed = Step::kRead;
  report.findings.add({Kind::kFailure}, reason);
  return report;
}

CheckReport checkFile(const std::string& name, const SessionOptions& options, std::size_t limit) {
  CheckReport report;
  report.file = name;
  report.findings = Findings(limit);
  const auto fail = [&report](Step step, const std::string& reason) {
    report.failed = step;
    report.findings.add({Kind::kFailure}, reason);
  };
  try {
    const InputFile input(name);
    report.file = input.name();
    check(input, options, report);
  } catch (const Failure& failure) {
    if (failure.step() == Step::kFind || failure.step() == Step::kLoad) throw;
    fail(failure.step(), failure.reason());
  } catch (const std::bad_alloc&) {
    fail(Step::kRead, "needs more memory than there is");
  } catch (const std::exception& error) {
    fail(Step::kRead, error.what());
  }
  report.findings.sort();
  return report;
}

void openExplained(Session& session, const InputFile& input, const SessionOptions& options) {
  try {
    session.open(input.path());
  } catch (const Failure& failure) {
    throw explained(failure, input, options);
  }
}

}  // namespace Ombe
