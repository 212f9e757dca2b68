// One JSON object a line.
#include "host/text/number_text.h"
#include "host/text/utf8_scan.h"
#include "host/writers/formats.h"

namespace Ombe {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

bool standsForItself(char byte) {
  const auto value = static_cast<unsigned char>(byte);
  return value >= 0x20 && value < 0x80 && byte != '"' && byte != '\\';
}

void appendEscape(std::string& out, char byte) {
  constexpr std::string_view kEscaped = "\"\\\b\f\n\r\t";
  constexpr std::string_view kLetters = "\"\\bfnrt";
  out += '\\';
  if (const std::size_t at = kEscaped.find(byte); at != std::string_view::npos) {
    out += kLetters[at];
    return;
  }
  out += 'u' + hexText(static_cast<unsigned char>(byte), 4);
}

void appendText(std::string& out, std::string_view text) {
  while (!text.empty()) {
    std::size_t plain = 0;
    while (plain < text.size() && standsForItself(text[plain])) ++plain;
    out.append(text.substr(0, plain));
    text.remove_prefix(plain);
    if (text.empty()) return;
    const Utf8Piece piece = nextUtf8Piece(text);
    if (!piece.wellFormed()) {
      out.append(kReplacement);
    } else if (piece.length == 1) {
      appendEscape(out, text[0]);
    } else {
      out.append(text.substr(0, piece.length));
    }
    text.remove_prefix(piece.length);
  }
}

class JsonlWriter final : public SubtitleWriter {
 public:
  JsonlWriter() : SubtitleWriter(Takes::kAll) {}

 private:
  void write(const Subtitle& subtitle, std::string& out) override {
    out += "{\"timestamp\": ";
    appendNumber(out, subtitle.timestamp);
    out += ", \"duration\": ";
    appendNumber(out, subtitle.duration);
    out += ", \"text\": \"";
    appendText(out, subtitle.text);
    out += "\"}\n";
  }
};

}  // namespace

std::unique_ptr<SubtitleWriter> makeJsonlWriter(const WriterOptions& /*options*/) {
  return std::make_unique<JsonlWriter>();
}

}  // namespace Ombe
