// The tokenizer finds the tokens, and leaves the text, that looking at byte after byte does.
#include "cost.h"
#include "microdvd/lines/text_tokenizer.h"
#include "support.h"

using ombe_fuzz::ExactText;
using ombe_fuzz::Input;
using ombe_fuzz::require;

namespace {

/// Moves `at` behind the next token, and ends that with NUL.
char* nextToken(char*& at, const std::string& delimiters, std::uint32_t& reported) {
  const auto isDelimiter = [&](char c) { return c != 0 && delimiters.find(c) != delimiters.npos; };
  while (isDelimiter(*at)) ++at;
  if (*at == '\0') return nullptr;
  char* start = at;
  while (*at != '\0' && !isDelimiter(*at)) ++at;
  reported = static_cast<std::uint32_t>(at - start) + (*at == '\0' ? 0 : 1);
  if (*at != '\0') *at++ = '\0';
  return start;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  const ExactText delimiters(input.take(input.number() % 4U));
  const ExactText text(input.rest);
  const ExactText copy(input.rest);
  Ombe::TextTokenizer tokenizer(text.block.get());
  char* at = copy.block.get();
  const ombe_fuzz::CostLimit limit(size, {0, 0, 25});
  for (int ends = 0; ends < 2;) {
    std::uint32_t reported = 0;
    std::uint32_t expected = 0;
    const char* token = tokenizer.nextToken(delimiters.block.get(), &reported);
    const char* other = nextToken(at, std::string(delimiters.view()), expected);
    if (token == nullptr) ++ends;
    require((token == nullptr) == (other == nullptr) && reported == expected, "the same lengths");
    require(token == nullptr || token - text.block.get() == other - copy.block.get(),
            "the same tokens");
  }
  require(text.view() == copy.view(), "the same text afterwards");
  return 0;
}
