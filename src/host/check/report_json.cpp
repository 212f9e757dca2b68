#include <nlohmann/json.hpp>

#include "host/check/report_writer.h"
#include "host/io/json_output.h"

namespace Ombe {
namespace {

Json toJson(const RateUse& use) {
  if (!use.rate.isSet()) return nullptr;
  Json rate = {{"numerator", use.rate.numerator},
               {"denominator", use.rate.denominator},
               {"source", use.source}};
  if (use.line != 0) rate["line"] = use.line;
  return rate;
}

Json toJson(const Finding& finding) {
  Json json = {{"severity", severityName(finding.severity)}, {"kind", finding.kind}};
  if (finding.line != 0) json["line"] = finding.line;
  json["message"] = finding.message;
  if (!finding.text.empty()) json["text"] = finding.text;
  return json;
}

/// Of the file as a whole when there is one, else of its first bad line.
std::string firstError(const std::vector<Finding>& findings) {
  for (const Finding& finding : findings) {
    if (finding.severity != Severity::kError) continue;
    if (finding.line == 0) return finding.message;
    return "line " + std::to_string(finding.line) + ": " + finding.message;
  }
  return "refused";
}

}  // namespace

Json toJson(const CheckReport& report) {
  const std::vector<Finding> sorted = report.findings.sorted();
  Json findings = Json::array();
  for (const Finding& finding : sorted) findings.push_back(toJson(finding));
  Json omitted = Json::object();
  for (const auto& [kind, count] : report.findings.omitted()) omitted[std::string(kind)] = count;
  Json json = {{"file", report.file}, {"opens", report.opens}};
  if (report.opens) {
    json["subtitles"] = report.subtitles;
    json["frameRate"] = toJson(report.rate);
    json["codePage"] = {{"name", report.codePage.empty() ? "UTF-8" : report.codePage},
                        {"signature", report.hasSignature}};
  } else {
    json["error"] = errorJson(report.file, report.step, firstError(sorted));
  }
  json["findings"] = std::move(findings);
  json["omitted"] = std::move(omitted);
  return json;
}

}  // namespace Ombe
