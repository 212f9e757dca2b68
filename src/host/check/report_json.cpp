#include <nlohmann/json.hpp>

#include "host/check/check.h"
#include "host/io/json_output.h"

namespace Ombe {
namespace {

const char* nameOf(RateSource source) {
  constexpr const char* kNames[] = {"none", "user", "header", "default"};
  static_assert(std::size(kNames) == static_cast<std::size_t>(RateSource::kDefault) + 1);
  return kNames[static_cast<std::size_t>(source)];
}

Json toJson(const RateUse& use) {
  if (!use.rate.isSet()) return nullptr;
  Json rate = {{"numerator", use.rate.numerator},
               {"denominator", use.rate.denominator},
               {"source", nameOf(use.source)}};
  if (use.line != 0) rate["line"] = use.line;
  return rate;
}

Json toJson(const CheckReport& report, const Finding& finding) {
  Json json = {{"severity", severityName(severityOf(finding.kind))},
               {"kind", wordFor(finding.kind)}};
  if (finding.line != 0) json["line"] = std::uint32_t{finding.line};  // a copy: it is packed
  json["message"] = report.findings.message(finding);
  if (finding.kind == Kind::kNotUtf8) json["codePages"] = report.likelyCodePages;
  const std::string excerpt = report.findings.excerpt(finding);
  if (!excerpt.empty()) json["text"] = excerpt;
  return json;
}

Json headOf(const CheckReport& report) {
  Json json = {{"file", report.file}, {"opens", report.opens()}};
  if (!report.opens()) {
    json["error"] = errorJson(report.file, stepName(*report.failed), report.findings.firstError());
    return json;
  }
  json["subtitles"] = report.subtitles;
  json["frameRate"] = toJson(report.rate);
  json["codePage"] = {{"name", report.codePage.empty() ? "UTF-8" : report.codePage},
                      {"signature", report.hasSignature}};
  if (report.choice && report.choice->isGuess()) {
    json["codePage"]["guessedFrom"] = report.choice->lines;
  }
  return json;
}

}  // namespace

void writeJson(const CheckReport& report, JsonWriter& out) {
  out.begin('{');
  const Json head = headOf(report);
  for (const auto& [name, value] : head.items()) out.value(value, name);
  out.begin('[', "findings");
  for (const Finding& finding : report.findings.kept()) out.value(toJson(report, finding));
  out.end();
  Json omitted = Json::object();
  for (const auto& [word, count] : report.findings.omitted()) omitted[std::string(word)] = count;
  out.value(omitted, "omitted");
  out.end();
}

}  // namespace Ombe
