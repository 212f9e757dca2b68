#include "host/session/code_page_choice.h"

#include <algorithm>

#include "host/text/likely_code_pages.h"
#include "host/text/number_text.h"
#include "host/text/utf8_scan.h"

namespace Ombe {

CodePageChoice chooseCodePage(std::string_view bytes) {
  using Ground = CodePageChoice::Ground;
  if (isUtf8(bytes)) return {Ground::kUtf8};
  GarbledTexts garbled;
  std::size_t wellFormed = 0;  // lines beyond ASCII
  while (!bytes.empty()) {
    const std::string_view line = bytes.substr(0, bytes.find_first_of("\r\n"));
    bytes.remove_prefix(std::min(line.size() + 1, bytes.size()));
    if (!isAscii(line) && !garbled.take(line)) ++wellFormed;
  }
  CodePageChoice choice{Ground::kNone, {}, {}, garbled.count()};
  if (wellFormed > garbled.count()) {
    choice.ground = Ground::kUtf8;  // with damage; a guess would garble the others
    return choice;
  }
  choice.likely = garbled.likelyCodePages();
  if (choice.likely.empty()) return choice;
  choice.ground = Ground::kGuess;
  choice.codePage = choice.likely.front();
  return choice;
}

std::string describe(const CodePageChoice& choice) {
  using Ground = CodePageChoice::Ground;
  const std::string lines = countText(choice.lines, "line");
  if (choice.ground == Ground::kSignature) return choice.codePage + ", by its signature";
  if (choice.ground == Ground::kGuess) return choice.codePage + ", guessed from " + lines;
  if (choice.ground == Ground::kNone) return "no UTF-8, and no code page is likely";
  return choice.lines == 0 ? "UTF-8" : "UTF-8, except for " + lines;
}

}  // namespace Ombe
