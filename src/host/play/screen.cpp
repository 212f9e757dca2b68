#include "host/play/screen.h"

#include "host/play/text_width.h"

namespace Ombe {
namespace {

std::string blanks(int count) { return std::string(static_cast<std::size_t>(count), ' '); }

std::string centred(const StyledLine& line, int columns, ColorDepth depth) {
  std::string row = blanks((columns - cellCount(line)) / 2);
  for (const Span& span : line) appendStyled(row, span, depth);
  return row;
}

std::string statusRow(std::string_view status, int columns) {
  const std::string_view text = clipText(status, columns);
  return "\x1B[7m" + std::string(text) + blanks(columns - cellCount(text)) + "\x1B[0m";
}

/// From the top, the status last.
std::vector<std::string> makeRows(const Frame& frame, int columns, ColorDepth depth) {
  std::vector<std::string> rows;
  for (const StyledLine& caption : frame.captions) {
    for (const StyledLine& line : wrapLine(caption, columns)) {
      rows.push_back(centred(line, columns, depth));
    }
  }
  rows.emplace_back();
  for (const StyledLine& line : wrapLine({{{}, frame.message}}, columns)) {
    rows.push_back(line.empty() ? std::string() : line.front().text);
  }
  rows.push_back(statusRow(frame.status, columns));
  return rows;
}

}  // namespace

std::string drawFrame(const Frame& frame, ScreenSize size, ColorDepth depth) {
  const std::vector<std::string> rows = makeRows(frame, size.columns, depth);
  const int missing = size.rows - static_cast<int>(rows.size());
  std::string out;
  for (int row = 0; row < size.rows; ++row) {
    out.append("\x1B[").append(std::to_string(row + 1)).append(";1H\x1B[K");
    if (row >= missing) out += rows[static_cast<std::size_t>(row - missing)];
  }
  return out;
}

}  // namespace Ombe
