#include "host/validate/contract_check.h"

namespace Ombe {

std::vector<ContractCheck> allContractChecks() {
  std::vector<ContractCheck> all;
  for (const auto& group : {loadingChecks(), lookupChecks(), containerChecks(), programChecks(),
                            streamChecks(), readingChecks()}) {
    all.insert(all.end(), group.begin(), group.end());
  }
  return all;
}

}  // namespace Ombe
