#include "host/srt_writer.h"

#include "host/number_text.h"

namespace Ombe {
namespace {

constexpr std::string_view kBoldEnd = "</B>";  // as subtitles carry it

void appendLine(std::string& out, std::string_view line) {
  if (line.find_first_not_of(" \t\v\f") == std::string_view::npos) return;
  for (std::size_t tag = line.find(kBoldEnd); tag != std::string_view::npos;
       tag = line.find(kBoldEnd)) {
    out.append(line.substr(0, tag)).append("</b>");
    line.remove_prefix(tag + kBoldEnd.size());
  }
  out.append(line);
  out += '\n';
}

}  // namespace

void SrtWriter::append(const Subtitle& subtitle, std::string& out) {
  appendNumber(out, ++index_);
  out += '\n';
  appendTimecode(out, subtitle.timestamp, ',');
  out += " --> ";
  appendTimecode(out, subtitle.timestamp + subtitle.duration, ',');
  out += '\n';
  std::string_view text = subtitle.text;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
    appendLine(out, text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  out += '\n';
}

}  // namespace Ombe
