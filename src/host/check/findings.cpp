#include "host/check/findings.h"

#include <algorithm>
#include <utility>

namespace Ombe {

const char* severityName(Severity severity) {
  switch (severity) {
    case Severity::kWarning:
      return "warning";
    case Severity::kError:
      return "error";
  }
  return "";
}

void Findings::add(Finding finding) {
  ++bySeverity_[finding.severity];
  const std::size_t count = ++byKind_[finding.kind];
  if (limit_ == 0 || count <= limit_) kept_.push_back(std::move(finding));
}

std::vector<Finding> Findings::sorted() const {
  std::vector<Finding> result = kept_;
  std::stable_sort(result.begin(), result.end(),
                   [](const Finding& a, const Finding& b) { return a.line < b.line; });
  return result;
}

std::map<std::string_view, std::size_t> Findings::omitted() const {
  std::map<std::string_view, std::size_t> result;
  for (const auto& [kind, count] : byKind_) {
    if (limit_ != 0 && count > limit_) result[kind] = count - limit_;
  }
  return result;
}

std::size_t Findings::count(Severity severity) const {
  const auto found = bySeverity_.find(severity);
  return found == bySeverity_.end() ? 0 : found->second;
}

std::size_t Findings::count(std::string_view kind) const {
  const auto found = byKind_.find(kind);
  return found == byKind_.end() ? 0 : found->second;
}

}  // namespace Ombe
