#include <fmt/core.h>

#include "host/check/check.h"
#include "host/io/output_file.h"
#include "host/text/number_text.h"
#include "host/text/visible_text.h"

namespace Ombe {
namespace {

std::string painted(std::string_view text, Severity severity, bool colored) {
  if (!colored) return std::string(text);
  const char* color = severity == Severity::kError  ? "31"
                      : severity == Severity::kNote ? "36"
                                                    : "33";
  return fmt::format("\x1B[1;{}m{}\x1B[0m", color, text);
}

std::string originOf(const RateUse& use) {
  if (use.source == RateSource::kUser) return "as given";
  return use.source == RateSource::kHeader ? fmt::format("stated in line {}", use.line)
                                           : "the default, since none is stated";
}

std::string rateText(const CheckReport& report) {
  if (!report.isMicroDVD) return {};
  const RateUse& use = report.rate;
  if (use.source == RateSource::kNone) return "no frame rate needed, ";
  return fmt::format("{}/{} = {:.3f} frames a second ({}), ", use.rate.numerator,
                     use.rate.denominator, use.rate.perSecond(), originOf(use));
}

std::string codePageText(const CheckReport& report) {
  if (report.hasSignature) return report.codePage + " (found in the file)";
  if (report.choice) return visibleLine(describe(*report.choice));
  return report.codePage.empty() ? "UTF-8 (none given)"
                                 : visibleLine(report.codePage) + " (as given)";
}

void appendFinding(std::string& out, const std::string& file, const Findings& findings,
                   const Finding& finding, bool colored) {
  const Severity severity = severityOf(finding.kind);
  out += file;
  if (finding.line != 0) out += ":" + std::to_string(finding.line);
  out += ": ";
  if (severity != Severity::kError) {
    out += painted(severityName(severity), severity, colored) + ": ";
  }
  out += visibleLine(findings.message(finding));
  const std::string excerpt = findings.excerpt(finding);
  if (!excerpt.empty()) out += ": " + visibleLine(excerpt);
  out += '\n';
}

}  // namespace

void writeText(const CheckReport& report, bool colored, OutputFile& output) {
  std::string& out = output.buffer();
  const std::string file = visibleLine(report.file);
  if (report.opens()) {
    out += fmt::format("{}: opens: {}, {}{}\n", file, countText(report.subtitles, "subtitle"),
                       rateText(report), codePageText(report));
  } else {
    out += fmt::format("{}: {}\n", file, painted("will not open", Severity::kError, colored));
  }
  for (const Finding& finding : report.findings.kept()) {
    appendFinding(out, file, report.findings, finding, colored);
    output.drain();
  }
  for (const auto& [word, count] : report.findings.omitted()) {
    out += fmt::format("{}: {} more of this kind: {} (--limit 0 shows all)\n", file, count, word);
  }
}

}  // namespace Ombe
