#include "host/text/code_page_advice.h"

namespace Ombe {

std::string codePageAdvice(const std::vector<std::string>& likely) {
  if (likely.empty()) return "name the code page with --code-page";
  std::string advice = "try --code-page " + likely.front();
  for (std::size_t i = 1; i < likely.size(); ++i) {
    advice.append(i + 1 == likely.size() ? " or " : ", ").append(likely[i]);
  }
  return advice;
}

}  // namespace Ombe
