#include "host/check/findings.h"

#include <algorithm>

#include "host/text/utf8_scan.h"

namespace Ombe {
namespace {

using enum Kind;
using enum Severity;

struct KindDescription {
  Kind kind;
  Severity severity;
  const char* word;
  const char* message;  // with places for what differs
  bool quotes = false;  // whether the line is shown as well
};

constexpr KindDescription kDescriptions[] = {
    {kFailure, kError, "failure", "<detail>"},
    {kOtherPlugin, kError, "unexplained",
     "the plug-in refuses it; what it wants of a file is not known here: see --log"},
    {kExtension, kError, "extension",
     "its name must end in .sub or .txt, in lower case: rename it"},
    {kSize, kError, "size", "is larger than the plug-in reads (2 GiB less 4 KiB)"},
    {kEmpty, kError, "foreign-format", "is empty"},
    {kBlank, kError, "foreign-format", "holds no line that is not empty"},
    {kShort, kError, "foreign-format", "is too short to hold a subtitle"},
    {kVobSub, kError, "foreign-format",
     "binary VobSub (an MPEG program stream): pictures, not text"},
    {kWide, kError, "foreign-format",
     "looks like UTF-16 or UTF-32 without a signature: save it as UTF-8, or with a signature"},
    {kBinary, kError, "foreign-format", "is binary: it holds bytes that no text holds"},
    {kWebVtt, kError, "foreign-format", "looks like WebVTT, not MicroDVD"},
    {kSubStation, kError, "foreign-format", "looks like SubStation Alpha, not MicroDVD"},
    {kSubRip, kError, "foreign-format", "looks like SubRip, not MicroDVD"},
    {kLateStart, kError, "late-start",
     "its first subtitle does not begin within the first 1,024 bytes, where it is looked for: "
     "delete what stands before it"},
    {kUndecodable, kError, "code-page",
     "its signature says <detail>, but what follows cannot be read as that"},
    {kWrongCodePage, kError, "code-page",
     "read as <detail>, as asked for, it does not begin with {first}{last}; as it is, it does"},
    {kDamagedText, kWarning, "code-page", "holds bytes that are no characters of <detail>"},
    {kUnexplained, kError, "unexplained",
     "the plug-in refuses it, and nothing found here says why: see --log"},
    {kDisagreement, kWarning, "disagreement",
     "the plug-in plays it with other subtitles or times than its lines say; what is said of "
     "lines and rate may not hold"},
    {kBadLine, kError, "bad-line", "<unread>", true},
    {kBlankLine, kError, "bad-line", "<unread> (only blanks: delete them)", true},
    {kSignatureLine, kError, "bad-line", "<unread> (a UTF-8 signature inside the text)", true},
    {kIndentedLine, kError, "bad-line", "<unread> (blanks before the first brace)", true},
    {kHalfLine, kError, "bad-line", "<unread> (no second frame number in braces)", true},
    {kNul, kWarning, "nul", "holds a NUL byte: the plug-in reads no further"},
    {kNoText, kWarning, "no-text", "has no text and is not shown", true},
    {kOpenBrace, kWarning, "no-text", "its second brace is not closed, so it is not shown", true},
    {kHeaderGiven, kWarning, "header",
     "shown as a subtitle, since the frame rate was given; SubRip and WebVTT leave it out where it "
     "comes first",
     true},
    {kHeaderAgain, kWarning, "header",
     "shown as a subtitle, since line <other> states the frame rate", true},
    {kHeaderLate, kWarning, "header",
     "shown as a subtitle, since it does not come before the others", true},
    {kHeaderElsewhere, kWarning, "header", "shown as a subtitle: a frame rate stands behind {1}{1}",
     true},
    {kHeaderWords, kWarning, "header",
     "shown as a subtitle: a frame rate is a number alone, such as 25 or 23.976", true},
    {kHeaderNothing, kWarning, "header", "taken as the frame rate, but it states none", true},
    {kFastRate, kWarning, "frame-rate", "more than 120 frames a second is hardly what is meant"},
    {kNotUtf8, kWarning, "not-utf-8", "not UTF-8<detail>"},
    {kIsUtf8, kWarning, "code-page", "its texts are UTF-8, but are read as <detail>, as asked for",
     true},
    {kNoCharacters, kWarning, "code-page", "holds bytes that are no characters of <detail>", true},
    {kSingleCharacter, kWarning, "code-page", "is one character alone, which is not converted",
     true},
    {kBrokenCharacter, kWarning, "broken-character",
     "a line break replaces the last byte of a character, since that is the byte of a bar", true},
    {kUnknownStyle, kWarning, "style-code", "<code> is shown as text: no such code is translated",
     true},
    {kLateStyle, kWarning, "style-code",
     "<code> is shown as text: only one code, at the very start, is translated", true},
    {kLongStyle, kWarning, "style-code", "<code> is shown as text: it may hold two letters at most",
     true},
    {kShortColor, kWarning, "style-code",
     "<code> is shown as text: a colour is written {c:$ and six digits}", true},
    {kSlash, kWarning, "slash",
     "the slash of a further line is shown: the one at the start is for all", true},
    {kColor, kNote, "color-order",
     "colours are taken as red, green, blue: where they look wrong, try --color-order bgr"},
    {kNegativeFrame, kWarning, "negative-frame",
     "has a negative frame number, which counts as a very late one", true},
    {kNoTime, kWarning, "no-time", "ends when it starts, so it is hardly seen", true},
    {kEndBeforeStart, kWarning, "end-before-start", "ends <seconds> before it starts"},
    {kLongShown, kWarning, "long", "stays for <seconds>"},
    {kOverlap, kWarning, "overlap", "begins <seconds> before the subtitle of line <other> ends"},
};

constexpr const KindDescription& describe(Kind kind) {
  return kDescriptions[static_cast<std::size_t>(kind)];
}

constexpr bool standWhereTheirKindSays() {
  std::size_t index = 0;
  for (const KindDescription& row : kDescriptions) {
    if (static_cast<std::size_t>(row.kind) != index++) return false;
  }
  return index == static_cast<std::size_t>(kOverlap) + 1;
}
static_assert(standWhereTheirKindSays());

/// A text up to `end`, but no more than some bytes of it, by whole characters.
std::string cut(std::string_view text, std::string_view end, std::size_t limit) {
  const std::string_view head = text.substr(0, limit + 1);
  const std::size_t length = std::min(head.find_first_of(end), head.size());
  if (length <= limit) return std::string(head.substr(0, length));
  std::size_t shown = 0;
  while (shown < limit) shown += nextUtf8Piece(text.substr(shown)).length;
  return std::string(text.substr(0, shown)) + "…";
}

/// A style code, which stands in the line from `from` on.
std::string codeAt(std::string_view text, std::size_t from) {
  const std::string code = cut(text.substr(std::min(from, text.size())), "}\r\n", 40);
  return code.ends_with("…") ? code : code + "}";
}

}  // namespace

const char* severityName(Severity severity) {
  constexpr const char* kNames[] = {"note", "warning", "error"};
  static_assert(std::size(kNames) == static_cast<std::size_t>(Severity::kError) + 1);
  return kNames[static_cast<std::size_t>(severity)];
}

const char* wordFor(Kind kind) { return describe(kind).word; }

Severity severityOf(Kind kind) { return describe(kind).severity; }

void Findings::add(const Finding& finding) {
  ++bySeverity_[severityOf(finding.kind)];
  const std::size_t count = ++byWord_[wordFor(finding.kind)];
  if (limit_ == 0 || count <= limit_) kept_.push_back(finding);
}

void Findings::add(const Finding& finding, std::string detail) {
  details_[finding.kind] = std::move(detail);
  add(finding);
}

void Findings::sort() {
  std::ranges::sort(
      kept_, {}, [](const Finding& one) { return std::pair(std::uint32_t{one.line}, one.kind); });
}

std::map<std::string_view, std::size_t> Findings::omitted() const {
  std::map<std::string_view, std::size_t> result;
  for (const auto& [word, count] : byWord_) {
    if (limit_ != 0 && count > limit_) result[word] = count - limit_;
  }
  return result;
}

bool Findings::has(Severity severity) const { return bySeverity_.contains(severity); }

std::string Findings::message(const Finding& finding) const {
  std::string text = describe(finding.kind).message;
  std::size_t from = 0;  // behind what was filled in, which may look like another place
  const auto fill = [&](std::string_view place, const auto& makeWords) {
    const std::size_t at = text.find(place, from);
    if (at == std::string::npos) return;
    const std::string words = makeWords();
    text.replace(at, place.size(), words);
    from = at + words.size();
  };
  const std::uint32_t number = finding.number;
  fill("<unread>", [] { return R"(not "{first}{last}text")"; });
  fill("<detail>", [&] { return details_.at(finding.kind); });
  fill("<code>", [&] { return codeAt(text_, std::size_t{finding.at} + number); });
  fill("<seconds>", [&] {
    return std::to_string(number / 1000) + "." + std::to_string(number / 100 % 10) + " s";
  });
  fill("<other>",
       [&] { return std::to_string(describe(finding.kind).quotes ? number : finding.at); });
  return text;
}

std::string Findings::firstError() const {
  for (const Finding& finding : kept_) {
    if (severityOf(finding.kind) != Severity::kError) continue;
    const std::string where =
        finding.line == 0 ? "" : "line " + std::to_string(finding.line) + ": ";
    return where + message(finding);
  }
  return "refused";
}

std::string Findings::excerpt(const Finding& finding) const {
  constexpr std::size_t kShown = 120;  // bytes of a line
  if (!describe(finding.kind).quotes) return {};
  return cut(std::string_view(text_).substr(finding.at), std::string_view("\r\n\0", 3), kShown);
}

}  // namespace Ombe
