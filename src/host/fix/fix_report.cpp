#include "host/fix/fix_report.h"

#include <fmt/core.h>

#include <nlohmann/json.hpp>

#include "host/io/json_output.h"
#include "host/text/number_text.h"

namespace Ombe {

void describe(const std::string& name, const FixedText& fixed,
              const std::function<void(const std::string& line)>& say) {
  const Repair& repair = fixed.repair;
  std::string out = fmt::format("{}: {}, {} kept, {} mended, {} dropped", name, fixed.codePage,
                                countText(repair.kept, "line"), repair.count(Fate::kMended),
                                repair.count(Fate::kDropped));
  if (const std::size_t left = repair.count(Fate::kLeft); left != 0)
    out += fmt::format(", {} left as they play (--thorough mends them)", left);
  if (fixed.retiming && fixed.retiming->frames != 0)
    out += fmt::format("; {} frames a second, frame numbers moved by {:+}",
                       headerText(fixed.retiming->rate), fixed.retiming->frames);
  if (fixed.isLossy)
    out += "; bytes that are no characters of " + fixed.codePage + " became U+FFFD";
  say(out);
  for (const LineChange& change : repair.changes) {
    std::string line =
        fmt::format("{}:{}: {}: {}", name, change.line, fateName(change.fate), change.what);
    if (!change.text.empty()) line += ": " + change.text;
    say(line);
  }
}

Json toJson(const BatchItem& item, const FixedText& fixed, bool isWritten) {
  Json changes = Json::array();
  for (const LineChange& change : fixed.repair.changes) {
    changes.push_back({{"line", change.line},
                       {"fate", fateName(change.fate)},
                       {"what", change.what},
                       {"text", change.text}});
  }
  Json json = {{"file", item.source.path},
               {"output", isWritten ? Json(item.output) : Json(nullptr)},
               {"codePage", fixed.codePage},
               {"lossy", fixed.isLossy},
               {"opened", fixed.repair.opened},
               {"header", fixed.retiming ? Json(headerText(fixed.retiming->rate)) : Json(nullptr)},
               {"movedBy", fixed.retiming ? fixed.retiming->frames : 0},
               {"subtitles", fixed.repair.subtitles},
               {"kept", fixed.repair.kept},
               {"mended", fixed.repair.count(Fate::kMended)},
               {"left", fixed.repair.count(Fate::kLeft)},
               {"dropped", fixed.repair.count(Fate::kDropped)},
               {"changes", std::move(changes)}};
  if (fixed.choice && fixed.choice->isGuess()) json["guessedFrom"] = fixed.choice->lines;
  return json;
}

}  // namespace Ombe
