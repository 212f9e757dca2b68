#include "host/writers/srt_writer.h"

#include "host/text/number_text.h"
#include "host/text/shown_lines.h"

namespace Ombe {
namespace {

constexpr std::string_view kBoldEnd = "</B>";  // as subtitles carry it

void appendLine(std::string& out, std::string_view line) {
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
  forEachShownLine(subtitle.text, [&out](std::string_view line) { appendLine(out, line); });
  out += '\n';
}

}  // namespace Ombe
