// SubRip.
#include "host/text/number_text.h"
#include "host/writers/formats.h"

namespace Ombe {
namespace {

/// What readers take for the times of the next subtitle, and how a text says it.
constexpr std::string_view kArrow = "-->";
constexpr std::string_view kBrokenArrow = "-- >";

class SrtWriter final : public SubtitleWriter {
 public:
  explicit SrtWriter(ColorOrder order)
      : SubtitleWriter(Takes::kEndNotBeforeStart), colorOrder_(order) {}

 private:
  void write(const Subtitle& subtitle, std::string& out) override {
    appendNumber(out, ++index_);
    out += '\n';
    appendTimecode(out, subtitle.timestamp, ',');
    out += " --> ";
    appendTimecode(out, subtitle.end(), ',');
    out += '\n';
    const auto isSpecial = [](char c) { return c == '<' || c == '-'; };
    const auto take = [&](std::string_view rest) { return appendSpecial(out, rest); };
    appendShownLines(out, subtitle.text, isSpecial, take);
    out += '\n';
  }

  /// Returns how many bytes it wrote in its own way.
  std::size_t appendSpecial(std::string& out, std::string_view rest) const {
    if (rest.starts_with(kArrow)) {
      out += kBrokenArrow;
      return kArrow.size();
    }
    const auto tag = readTag(rest, colorOrder_);
    if (!tag) {
      out += rest[0];
      return 1;
    }
    std::string text(rest.substr(0, tag->length));
    if (tag->closes && tag->kind == Tag::Kind::kBold) text = "</b>";
    if (tag->color && colorOrder_ != ColorOrder::kRgb) {
      text.replace(text.find('#') + 1, kColorDigits, hexText(*tag->color, kColorDigits));
    }
    if (text.ends_with(kArrow))
      text.replace(text.size() - kArrow.size(), kArrow.size(), kBrokenArrow);
    out += text;
    return tag->length;
  }

  const ColorOrder colorOrder_;
  std::uint64_t index_ = 0;
};

}  // namespace

std::unique_ptr<SubtitleWriter> makeSrtWriter(const WriterOptions& options) {
  return std::make_unique<SrtWriter>(options.colorOrder);
}

}  // namespace Ombe
