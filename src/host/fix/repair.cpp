#include "host/fix/repair.h"

#include <algorithm>
#include <utility>

#include "host/fix/draft.h"
#include "host/fix/source_lines.h"
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

/// Takes a text that opens into the result just as it is, and names what is less than it seems.
class Keeper {
 public:
  explicit Keeper(Repair& result) : result_(result) {}

  void run(const std::string& text) {
    const std::size_t end = std::min(text.find('\0'), text.size());
    const SourceLines source(text.substr(0, end), SourceLines::Controls::kKeep);
    for (const SourceLine& line : source.lines()) keep(line);
    if (end < text.size()) keepUnread(std::string_view(text).substr(end), source);
  }

 private:
  void keep(const SourceLine& line) {
    result_.text.append(line.text).append("\n");
    result_.sources.push_back(line.number);
    const Head head = readHead(line.text).value_or(Head{});
    const char* first = scanLine(line.text.data()).text;
    if (first != nullptr && !takeLine(rate_, head.first, head.last, head.text)) ++result_.subtitles;
    if (const char* why = flaw(line, head, first != nullptr)) {
      result_.changes.push_back({Fate::kLeft, line.number, why, std::string(line.text)});
    } else {
      ++result_.kept;
    }
  }

  static const char* flaw(const SourceLine& line, const Head& head, bool isShown) {
    if (!isShown)
      return head.text.empty() ? nullptr : "is not shown: its second brace is not closed";
    if (frameOf(head.last) < frameOf(head.first)) return "ends before it starts";
    return holdsControls(line.text) ? "holds control bytes" : nullptr;
  }

  /// What stands behind a NUL byte, where the plug-in stops reading.
  void keepUnread(std::string_view rest, const SourceLines& source) {
    const std::uint64_t line = source.lines().empty() ? 1 : source.lines().back().number;
    const bool isPadding =
        SourceLines(std::string(rest), SourceLines::Controls::kRemove).lines().empty();
    if (isPadding) {
      result_.changes.push_back({Fate::kMended, line, "NUL bytes at the end removed", {}});
      return;
    }
    result_.text.pop_back();
    result_.text.append(rest);
    if (rest.back() != '\n') result_.text += '\n';
    result_.changes.push_back(
        {Fate::kLeft, line, "holds a NUL byte, behind which nothing is read", {}});
  }

  RateInForce rate_;
  Repair& result_;
};

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
    Keeper(result).run(text);
    return result;
  }
  mendLines(std::move(text), options.rate, result);
  std::ranges::stable_sort(result.changes, {}, &LineChange::line);
  return result;
}

}  // namespace Ombe
