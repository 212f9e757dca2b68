// Style codes: one marker at most becomes tags, and what stands behind it stays.
#include <cctype>

#include "cost.h"
#include "microdvd/lines/style_codes.h"
#include "support.h"

using ombe_fuzz::ExactText;
using ombe_fuzz::require;

namespace {

char lower(char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); }

std::string translated(const std::string& text) {
  if (text[0] == '/' || text[0] == '\\') return "<i>" + text.substr(1) + "</i>";
  const std::size_t brace = text.find('}');
  if (brace == std::string::npos || text[0] != '{' || text[2] != ':') return text;
  std::string shown = text.substr(brace + 1);
  if (lower(text[1]) == 'y' && brace <= 5) {
    for (std::size_t i = 3; i < brace; ++i) {
      if (lower(text[i]) == 'i') shown.insert(0, "<i>").append("</i>");
      if (lower(text[i]) == 'b') shown.insert(0, "<b>").append("</B>");
    }
    return shown;
  }
  if (lower(text[1]) == 'c' && brace == 10 && (text[3] == '$' || text[3] == '#')) {
    return "<font color=\"#" + text.substr(4, 6) + "\">" + shown + "</font>";
  }
  return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const ExactText text({reinterpret_cast<const char*>(data), size});
  Ombe::StyledText styled;
  std::string result;
  {
    const ombe_fuzz::CostLimit limit(size, {0.008, 2, 0.6});
    styled = Ombe::translateStyleCodes(text.view());
    result = styled.str();
  }
  require(result == translated(std::string(text.view())), "the tags of the plain translation");
  require(text.view().ends_with(styled.body), "the text behind the marker is kept");
  require(text.view().size() - styled.body.size() <= 11, "one marker at most is taken out");
  require(styled.size() == result.size(), "the size told is the size written");
  return 0;
}
