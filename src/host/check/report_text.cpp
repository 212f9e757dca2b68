#include <fmt/format.h>

#include "host/check/report_writer.h"
#include "host/text/utf8_scan.h"
#include "host/text/visible_text.h"

namespace Ombe {
namespace {

constexpr std::size_t kShown = 120;  // bytes of a line

std::string shown(std::string_view text) {
  if (text.size() <= kShown) return visibleLine(text);
  std::size_t end = 0;
  while (end < kShown) end += nextUtf8Piece(text.substr(end)).length;
  return visibleLine(text.substr(0, end)) + "…";
}

std::string painted(std::string_view text, Severity severity, bool coloured) {
  if (!coloured) return std::string(text);
  const char* color = severity == Severity::kError ? "31" : "33";
  return fmt::format("\x1B[1;{}m{}\x1B[0m", color, text);
}

std::string rateText(const RateUse& use) {
  const std::string_view source = use.source;
  if (source == "none") return "no frame rate needed";
  const std::string origin = source == "header" ? fmt::format("stated in line {}", use.line)
                             : source == "user" ? "as given"
                                                : "the default, since none is stated";
  return fmt::format("{}/{} = {:.3f} frames a second ({})", use.rate.numerator,
                     use.rate.denominator, use.rate.perSecond(), origin);
}

std::string codePageText(const CheckReport& report) {
  if (report.hasSignature) return report.codePage + " (found in the file)";
  return report.codePage.empty() ? "UTF-8 (none given)" : report.codePage + " (as given)";
}

void appendFinding(std::string& out, const std::string& file, const Finding& finding,
                   bool coloured) {
  out += file;
  if (finding.line != 0) out += fmt::format(":{}", finding.line);
  out += ": ";
  if (finding.severity != Severity::kError) {
    out += painted(severityName(finding.severity), finding.severity, coloured) + ": ";
  }
  out += visibleLine(finding.message);
  if (!finding.text.empty()) out += ": " + shown(finding.text);
  out += '\n';
}

}  // namespace

void appendText(std::string& out, const CheckReport& report, bool coloured) {
  const std::string file = visibleLine(report.file);
  if (report.opens) {
    out += fmt::format("{}: opens: {} subtitles, {}, {}\n", file, report.subtitles,
                       rateText(report.rate), codePageText(report));
  } else {
    out += fmt::format("{}: {}\n", file, painted("will not open", Severity::kError, coloured));
  }
  for (const Finding& finding : report.findings.sorted()) {
    appendFinding(out, file, finding, coloured);
  }
  for (const auto& [kind, count] : report.findings.omitted()) {
    out += fmt::format("{}: {} more of this kind: {} (--limit 0 shows all)\n", file, count, kind);
  }
}

}  // namespace Ombe
