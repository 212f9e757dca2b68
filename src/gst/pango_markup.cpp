#include "gst/pango_markup.h"

#include <algorithm>

#include "host/text/utf8_scan.h"
#include "host/text/visible_text.h"

namespace Ombe {
namespace {

/// Most texts mean nothing else in Pango and hold nothing that acts instead of showing: such
/// characters of several bytes begin with one of three.
bool isPlain(std::string_view text) {
  const auto shows = [](char c) {
    const bool mayAct = c == '\xC2' || c == '\xD8' || c == '\xE2';
    const bool isControl = static_cast<unsigned char>(c) < ' ' || c == '\x7F';
    return !mayAct && (!isControl || c == '\n') && c != '<' && c != '>' && c != '&';
  };
  return std::all_of(text.begin(), text.end(), shows) && isUtf8(text);
}

void appendColor(Color color, std::string& out) {
  for (int shift = 20; shift >= 0; shift -= 4) out += "0123456789ABCDEF"[color >> shift & 0xF];
}

void appendSpan(const Span& span, std::string& out) {
  if (span.style.color) {
    out += "<span foreground=\"#";
    appendColor(*span.style.color, out);
    out += "\">";
  }
  if (span.style.bold) out += "<b>";
  if (span.style.italic) out += "<i>";
  out += escaped(span.text, {{'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}});
  if (span.style.italic) out += "</i>";
  if (span.style.bold) out += "</b>";
  if (span.style.color) out += "</span>";
}

}  // namespace

void appendPangoMarkup(std::string_view text, ColorOrder order, std::string& out) {
  if (isPlain(text)) {
    out += text;
    return;
  }
  const char* separator = "";
  for (const StyledLine& line : parseMarkup(text, order)) {
    out += separator;
    for (const Span& span : line) appendSpan(span, out);
    separator = "\n";
  }
}

}  // namespace Ombe
