#include "host/fix/repair.h"

#include <algorithm>
#include <utility>

#include "host/fix/repair_steps.h"
#include "microdvd/lines/line_scan.h"
#include "microdvd/lines/text_tokenizer.h"

namespace Ombe {
namespace {

constexpr std::size_t kHeadSize = 1024;  // bytes in which the plug-in looks for the first numbers

/// Whether every line reads as the plug-in wants it, as far as it reads.
bool opensAsItIs(std::string text) {
  TextTokenizer lines(text.data());
  bool any = false;
  while (const char* line = lines.nextToken("\r\n", nullptr)) {
    const std::string_view whole(line, static_cast<std::size_t>(lines.tokenEnd() - line));
    if (scanLine(line, lines.tokenEnd()).count < 2) return false;
    if (!any && scanLine(std::string(whole.substr(0, kHeadSize)).c_str()).count < 2) return false;
    any = true;
  }
  return any;
}

}  // namespace

const char* fateName(Fate fate) {
  constexpr const char* kNames[] = {"mended", "left", "dropped"};
  static_assert(std::size(kNames) == static_cast<std::size_t>(Fate::kDropped) + 1);
  return kNames[static_cast<std::size_t>(fate)];
}

std::size_t Repair::count(Fate fate) const {
  return static_cast<std::size_t>(std::ranges::count(changes, fate, &LineChange::fate));
}

Repair repair(std::string text, const RepairOptions& options) {
  Repair result;
  result.opened = opensAsItIs(text);
  if (result.opened && !options.thorough) {
    keepLines(text, result);
    return result;
  }
  mendLines(std::move(text), options.rate, result);
  std::ranges::stable_sort(result.changes, {}, &LineChange::line);
  return result;
}

}  // namespace Ombe
