// WebVTT.
#include <set>

#include "host/text/number_text.h"
#include "host/text/utf8_scan.h"
#include "host/writers/formats.h"

namespace Ombe {
namespace {

/// The colours that every reader of WebVTT knows by name.
constexpr struct {
  Color color;
  const char* name;
} kClasses[] = {{0xFFFFFF, "white"}, {0x00FF00, "lime"},   {0x00FFFF, "cyan"},
                {0xFF0000, "red"},   {0xFFFF00, "yellow"}, {0xFF00FF, "magenta"},
                {0x0000FF, "blue"},  {0x000000, "black"}};

bool isSpecial(char byte) {
  return byte == '&' || byte == '<' || byte == '>' || byte == '\0' ||
         static_cast<unsigned char>(byte) >= 0x80;
}

/// A style block has to stand before the first cue, so with one cues are kept until `end`.
class VttWriter final : public SubtitleWriter {
 public:
  explicit VttWriter(const WriterOptions& options)
      : SubtitleWriter(Takes::kEndAfterStart),
        hasStyle_(options.vttStyle),
        colorOrder_(options.colorOrder) {}

  void begin(std::string& out) override { out += "WEBVTT\n\n"; }

  void end(std::string& out) override {
    if (!hasStyle_) return;
    if (!otherColors_.empty()) out += "STYLE\n";
    for (const Color color : otherColors_) {
      const std::string digits = hexText(color, kColorDigits);
      out.append("::cue(.c").append(digits).append(") { color: #").append(digits).append("; }\n");
    }
    if (!otherColors_.empty()) out += '\n';
    out += keptCues_;
  }

  [[nodiscard]] std::vector<std::string> remarks() const override {
    std::vector<std::string> result = SubtitleWriter::remarks();
    if (hasStyle_ || otherColors_.empty()) return result;
    result.push_back("left out colours that are none of WebVTT's eight, such as #" +
                     hexText(*otherColors_.begin(), kColorDigits) + "; --vtt-style writes them");
    return result;
  }

 private:
  void write(const Subtitle& subtitle, std::string& out) override {
    std::string& cues = hasStyle_ ? keptCues_ : out;
    appendTimecode(cues, subtitle.timestamp, '.');
    cues += " --> ";
    appendTimecode(cues, subtitle.end(), '.');
    cues += '\n';
    open_ = {};
    const auto take = [&](std::string_view rest) { return appendSpecial(cues, rest); };
    appendShownLines(cues, subtitle.text, isSpecial, take);
    cues += '\n';
  }

  std::size_t appendSpecial(std::string& out, std::string_view rest) {
    const auto tag = readTag(rest, colorOrder_);
    if (!tag || !open_.take(*tag)) return appendCharacter(out, rest);
    appendTag(out, *tag);
    return tag->length;
  }

  void appendTag(std::string& out, const Tag& tag) {
    out += tag.closes ? "</" : "<";
    out += "ibuc"[static_cast<std::size_t>(tag.kind)];
    if (tag.color) appendClass(out, *tag.color);
    out += '>';
  }

  void appendClass(std::string& out, Color color) {
    for (const auto& known : kClasses) {
      if (known.color == color) {
        out.append(".").append(known.name);
        return;
      }
    }
    otherColors_.insert(color);
    if (hasStyle_) out.append(".c").append(hexText(color, kColorDigits));
  }

  /// Returns how many bytes it wrote in its own way.
  static std::size_t appendCharacter(std::string& out, std::string_view line) {
    const Utf8Piece piece = nextUtf8Piece(line);
    switch (piece.codePoint) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      default:
        out += piece.codePoint > 0 ? line.substr(0, piece.length) : "\uFFFD";
    }
    return piece.length;
  }

  const bool hasStyle_;
  const ColorOrder colorOrder_;
  std::string keptCues_;
  std::set<Color> otherColors_;  // that are no classes
  OpenTags open_;                // in the subtitle
};

}  // namespace

std::unique_ptr<SubtitleWriter> makeVttWriter(const WriterOptions& options) {
  return std::make_unique<VttWriter>(options);
}

}  // namespace Ombe
