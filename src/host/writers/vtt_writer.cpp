#include "host/writers/vtt_writer.h"

#include <algorithm>

#include "host/text/number_text.h"
#include "host/text/shown_lines.h"
#include "host/text/utf8_scan.h"

namespace Ombe {
namespace {

constexpr std::size_t kLongestTag = 100;  // bytes

char lowered(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c; }

std::string lowered(std::string_view text) {
  std::string result(text);
  for (char& c : result) c = lowered(c);
  return result;
}

/// The six digits behind the "#" of a font tag; empty for another colour.
std::string colorOf(const std::string& tag) {
  const std::size_t sign = tag.find('#');
  if (sign == std::string::npos) return {};
  const std::string digits = tag.substr(sign + 1, 6);
  const bool isColor =
      digits.size() == 6 && digits.find_first_not_of("0123456789abcdef") == std::string::npos;
  return isColor ? digits : std::string();
}

bool isMarkup(char byte) {
  return byte == '&' || byte == '<' || byte == '>' || byte == '\0' ||
         static_cast<unsigned char>(byte) >= 0x80;
}

}  // namespace

void VttWriter::append(const Subtitle& subtitle, std::string& /*out*/) {
  appendTimecode(cues_, subtitle.timestamp, '.');
  cues_ += " --> ";
  appendTimecode(cues_, subtitle.timestamp + subtitle.duration, '.');
  cues_ += '\n';
  open_.clear();
  forEachShownLine(subtitle.text, [this](std::string_view line) { appendLine(line); });
  cues_ += '\n';
}

void VttWriter::appendLine(std::string_view line) {
  while (!line.empty()) {
    const auto stop = std::find_if(line.begin(), line.end(), isMarkup);
    const auto plain = static_cast<std::size_t>(stop - line.begin());
    cues_ += line.substr(0, plain);
    line.remove_prefix(plain);
    if (line.empty() || appendTag(line)) continue;
    const Utf8Piece piece = nextUtf8Piece(line);
    if (line[0] == '&') {
      cues_ += "&amp;";
    } else if (line[0] == '<') {
      cues_ += "&lt;";
    } else if (line[0] == '>') {
      cues_ += "&gt;";
    } else {
      cues_ += piece.wellFormed && line[0] != '\0' ? line.substr(0, piece.length) : "\uFFFD";
    }
    line.remove_prefix(piece.length);
  }
  cues_ += '\n';
}

/// Takes a tag that players know off the start; a closing one only when it closes something.
bool VttWriter::appendTag(std::string_view& rest) {
  const std::size_t size = rest.substr(0, kLongestTag).find('>') + 1;
  if (rest[0] != '<' || size == 0) return false;
  const std::string tag = lowered(rest.substr(0, size));
  const bool closes = tag[1] == '/';
  const char letter = tag[closes ? 2 : 1];
  const bool isFont = tag.starts_with("<font ") || tag == "</font>";
  const bool isPlain = tag.size() == (closes ? 4U : 3U) && std::string_view("ibu").find(letter) < 3;
  if (!isFont && !isPlain) return false;
  if (closes) {
    const std::size_t opened = open_.rfind(letter);
    if (opened == std::string::npos) return false;
    open_.erase(opened, 1);
    cues_ += isFont ? "</c>" : tag;
  } else if (const std::string color = colorOf(tag); isFont && !color.empty()) {
    colors_.insert(color);
    cues_.append("<c.c").append(color).append(">");
    open_ += letter;
  } else {
    cues_ += isFont ? "<c>" : tag;
    open_ += letter;
  }
  rest.remove_prefix(size);
  return true;
}

void VttWriter::end(std::string& out) {
  out += "WEBVTT\n\n";
  if (!colors_.empty()) {
    out += "STYLE\n";
    for (const std::string& color : colors_) {
      out.append("::cue(.c").append(color).append(") { color: #").append(color).append("; }\n");
    }
    out += '\n';
  }
  out += cues_;
}

}  // namespace Ombe
