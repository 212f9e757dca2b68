#include "host/validate/validation.h"

#include <algorithm>

#include "host/validate/watched_engine.h"

namespace Ombe {
namespace {

/// Without these no other can be asked.
constexpr std::string_view kFirst[] = {"loading.loads", "loading.entry-point", "loading.component"};

/// Where this hangs, what plays a sample would hang one by one.
constexpr char kOpens[] = "container.opens";

bool isFirst(const ContractCheck& check) {
  return std::find(std::begin(kFirst), std::end(kFirst), check.name) != std::end(kFirst);
}

bool isNamed(const ContractCheck& check, const std::string& name) {
  return name == check.name || name == check.group();
}

bool isChosen(const ContractCheck& check, const std::vector<std::string>& only) {
  return only.empty() ||
         std::ranges::any_of(only, [&](const std::string& name) { return isNamed(check, name); });
}

}  // namespace

std::vector<ContractCheck> allContractChecks() {
  std::vector<ContractCheck> all;
  for (const auto& group : {loadingChecks(), lookupChecks(), containerChecks(), programChecks(),
                            settingsChecks(), streamChecks(), readingChecks(), allocatorChecks(),
                            threadsChecks(), comingBackChecks(), misuseChecks(), memoryChecks()}) {
    all.insert(all.end(), group.begin(), group.end());
  }
  return all;
}

std::size_t Validation::count(Outcome outcome) const {
  return static_cast<std::size_t>(std::ranges::count(
      judgements, outcome, [](const Judgement& judgement) { return judgement.verdict.outcome; }));
}

std::vector<std::string> unknownNames(const std::vector<std::string>& names) {
  std::vector<std::string> unknown = names;
  for (const ContractCheck& check : allContractChecks()) {
    std::erase_if(unknown, [&](const std::string& name) { return isNamed(check, name); });
  }
  return unknown;
}

Validation validate(const ValidationOptions& options,
                    const std::function<void(const Judgement&)>& take) {
  Validation validation{options.subject};
  bool opens = true;
  for (const ContractCheck& check : allContractChecks()) {
    const bool isWanted = isChosen(check, options.only);
    if (!isWanted && !isFirst(check)) continue;
    Judgement judgement{check, {Outcome::kNeedsSample, "container.opens does not end"}};
    if (opens || !std::holds_alternative<void (*)(Playing&)>(check.ask)) {
      judgement.verdict =
          judge([&] { askOf(options.subject, check); }, options.limitSeconds, options.isLoud);
    }
    opens = opens && !(judgement.verdict.isHang && check.name == std::string_view(kOpens));
    validation.isLoadable = !isFirst(check) || judgement.verdict.outcome == Outcome::kPassed;
    if (!isWanted && validation.isLoadable) continue;
    validation.judgements.push_back(judgement);
    take(judgement);
    if (!validation.isLoadable) break;
  }
  return validation;
}

}  // namespace Ombe
