#include "host/validate/contract_check.h"

namespace Ombe {

std::vector<ContractCheck> allContractChecks() {
  std::vector<ContractCheck> all;
  for (const auto& group : {loadingChecks(), lookupChecks(), containerChecks(), programChecks(),
                            settingsChecks(), streamChecks(), readingChecks(), allocatorChecks(),
                            threadsChecks(), comingBackChecks(), memoryChecks()}) {
    all.insert(all.end(), group.begin(), group.end());
  }
  return all;
}

}  // namespace Ombe
