#include "microdvd/lines/text_tokenizer.h"

#include <cstring>

namespace Ombe {
namespace {

/// Does what strspn does, without its preparations, since most runs hold one or two.
char* skipDelimiters(char* at, const char* delimiters) {
  while (*at != '\0' && std::strchr(delimiters, *at) != nullptr) ++at;
  return at;
}

}  // namespace

char* TextTokenizer::nextToken(const char* delimiters, std::uint32_t* reported) {
  char* start = skipDelimiters(text + position + 1, delimiters);
  char* end = start + std::strcspn(start, delimiters);
  const bool isDelimited = *end != '\0';
  *end = '\0';
  // A delimiter counts as examined, the end of the text does not: it is met again by the next call.
  position = static_cast<std::int32_t>(end - text) - (isDelimited ? 0 : 1);
  if (start == end) return nullptr;
  end_ = end;
  if (reported != nullptr) {
    *reported = static_cast<std::uint32_t>(end - start) + (isDelimited ? 1U : 0U);
  }
  return start;
}

}  // namespace Ombe
