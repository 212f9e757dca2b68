#include "gst/pango_markup.h"

#include <algorithm>

namespace Ombe {
namespace {

/// Most texts are ASCII that means nothing else in Pango.
bool isPlain(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) {
    return (c >= ' ' && c < 0x7F && c != '<' && c != '>' && c != '&') || c == '\n';
  });
}

void appendEscaped(std::string_view text, std::string& out) {
  for (const char c : text) {
    if (c == '&') {
      out += "&amp;";
    } else if (c == '<') {
      out += "&lt;";
    } else if (c == '>') {
      out += "&gt;";
    } else {
      out += c;
    }
  }
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
  appendEscaped(span.text, out);
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
