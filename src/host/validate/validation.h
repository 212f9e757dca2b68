// A plug-in asked all that was chosen, and the reports on it.
#pragma once

#include <functional>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "host/validate/contract_check.h"
#include "host/validate/verdict.h"

namespace Ombe {

struct ValidationOptions {
  Subject subject;
  std::vector<std::string> only = {};  ///< names of checks and groups; empty for all
  int limitSeconds = 30;               ///< for each check
  bool isLoud = false;                 ///< lets the plug-in write to standard error
};

/// One question, and what became of it.
struct Judgement {
  ContractCheck check;
  Verdict verdict;
};

struct Validation {
  Subject subject;
  std::vector<Judgement> judgements = {};
  bool isLoadable = true;  ///< otherwise the last judgement says why not, and there are no more

  [[nodiscard]] std::size_t count(Outcome outcome) const;
};

/// Those of the names given, of checks or groups, that there is no check of.
std::vector<std::string> unknownNames(const std::vector<std::string>& names);

/// Asks in the order of the checks, and hands out each answer when it is there. Whether the plug-in
/// loads and makes a component is asked first in any case. Throws Failure. Call it while this
/// process has one thread.
Validation validate(const ValidationOptions& options,
                    const std::function<void(const Judgement&)>& take);

/// Where the contract says it.
std::string linkOf(const ContractCheck& check);

std::string textOf(const Judgement& judgement, bool colored);
std::string summaryOf(const Validation& validation);
nlohmann::ordered_json toJson(const ContractCheck& check);
nlohmann::ordered_json toJson(const Validation& validation);
/// The report in JUnit's XML, which build servers read.
std::string junitXml(const Validation& validation);

}  // namespace Ombe
