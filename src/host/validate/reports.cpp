#include <fmt/core.h>

#include <nlohmann/json.hpp>

#include "host/text/number_text.h"
#include "host/text/visible_text.h"
#include "host/validate/validation.h"

namespace Ombe {
namespace {

using Json = nlohmann::ordered_json;

struct Words {
  const char* forPrograms;
  const char* forPeople;
  const char* color;
};

Words wordsOf(Outcome outcome) {
  switch (outcome) {
    case Outcome::kPassed:
      return {"passed", "passed", "32"};
    case Outcome::kFailed:
      return {"failed", "FAILED", "1;31"};
    case Outcome::kNotOffered:
      return {"notOffered", "not offered", "36"};
    case Outcome::kNeedsSample:
      break;
  }
  return {"needsSample", "needs sample", "36"};
}

std::string escapedXml(std::string_view text) {
  return escaped(visibleLine(text), {{'&', "&amp;"}, {'<', "&lt;"}, {'"', "&quot;"}});
}

void appendCase(std::string& xml, const Judgement& judgement) {
  const auto& [check, verdict] = judgement;
  xml += fmt::format("  <testcase classname=\"{}\" name=\"{}\"", check.group(), check.name);
  if (verdict.outcome == Outcome::kPassed) {
    xml += "/>\n";
  } else if (verdict.outcome == Outcome::kFailed) {
    xml +=
        fmt::format(">\n    <failure message=\"{}\">expected: {} ({})</failure>\n  </testcase>\n",
                    escapedXml(verdict.came), escapedXml(check.expected), linkOf(check));
  } else {
    xml +=
        fmt::format(">\n    <skipped message=\"{}\"/>\n  </testcase>\n", escapedXml(verdict.came));
  }
}

}  // namespace

std::string linkOf(const ContractCheck& check) {
  return std::string("docs/engine-interface.md#") + check.section;
}

std::string textOf(const Judgement& judgement, bool colored) {
  const auto& [check, verdict] = judgement;
  const Words words = wordsOf(verdict.outcome);
  const std::string word = fmt::format("{:<13}", words.forPeople);
  std::string out = colored ? fmt::format("\x1B[{}m{}\x1B[0m", words.color, word) : word;
  out += fmt::format("{}\n", check.name);
  if (verdict.outcome == Outcome::kFailed) {
    out += fmt::format("  expected:   {}\n  came:       {}\n  contract:   {}\n", check.expected,
                       visibleLine(verdict.came), linkOf(check));
  }
  return out;
}

std::string summaryOf(const Validation& validation) {
  const std::size_t missing = validation.count(Outcome::kNeedsSample);
  std::string out = fmt::format(
      "{}: {}: {} passed, {} failed, {} not offered", visibleLine(validation.subject.plugin),
      countText(validation.judgements.size(), "check"), validation.count(Outcome::kPassed),
      validation.count(Outcome::kFailed), validation.count(Outcome::kNotOffered));
  if (missing != 0) {
    out += fmt::format(", {} need a file of its format (--sample)", missing);
  }
  return out + '\n';
}

Json toJson(const ContractCheck& check) {
  return {{"name", check.name},
          {"group", check.group()},
          {"expected", check.expected},
          {"contract", linkOf(check)}};
}

Json toJson(const Validation& validation) {
  Json checks = Json::array();
  for (const auto& [check, verdict] : validation.judgements) {
    Json one = toJson(check);
    one["outcome"] = wordsOf(verdict.outcome).forPrograms;
    one["came"] = verdict.came.empty() ? Json(nullptr) : Json(verdict.came);
    checks.push_back(std::move(one));
  }
  return {{"path", validation.subject.plugin},
          {"samples", validation.subject.samples},
          {"isLoadable", validation.isLoadable},
          {"passed", validation.count(Outcome::kPassed)},
          {"failed", validation.count(Outcome::kFailed)},
          {"notOffered", validation.count(Outcome::kNotOffered)},
          {"needsSample", validation.count(Outcome::kNeedsSample)},
          {"checks", std::move(checks)}};
}

std::string junitXml(const Validation& validation) {
  std::string xml = fmt::format(
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<testsuite name=\"{}\" tests=\"{}\" failures=\"{}\" skipped=\"{}\">\n",
      escapedXml(validation.subject.plugin), validation.judgements.size(),
      validation.count(Outcome::kFailed),
      validation.count(Outcome::kNotOffered) + validation.count(Outcome::kNeedsSample));
  for (const Judgement& judgement : validation.judgements) appendCase(xml, judgement);
  return xml + "</testsuite>\n";
}

}  // namespace Ombe
