// The lines of a text that is to be mended.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Ombe {

struct SourceLine {
  std::string_view text;  ///< without its end; NUL stands behind it
  std::uint64_t number;   ///< as an editor counts
  std::size_t gap;        ///< lines without text between it and the one before
  bool hadControls;       ///< bytes below the blank, except tabs, that were taken out
};

/// A line that held nothing but blanks and control bytes.
struct BlankLine {
  std::uint64_t number;
  bool hadControls;
};

/// Splits at CR, LF and CR LF, as a text that came through the wrong hands may end its lines (CR CR
/// LF too). Owns the text, which the lines view; stays where it is.
class SourceLines {
 public:
  enum class Controls { kKeep, kRemove };

  SourceLines(std::string text, Controls controls);
  SourceLines(const SourceLines&) = delete;
  SourceLines& operator=(const SourceLines&) = delete;

  /// Those that hold more than blanks.
  [[nodiscard]] const std::vector<SourceLine>& lines() const { return lines_; }
  [[nodiscard]] const std::vector<BlankLine>& blankLines() const { return blankLines_; }

  /// Whether a line stands under the one before without a space that others lack: a text may have
  /// an empty line behind every line.
  [[nodiscard]] bool isAdjacent(const SourceLine& line) const { return line.gap <= usualGap_; }

 private:
  void add(std::size_t begin, std::size_t end, Controls controls);

  std::string text_;
  std::vector<SourceLine> lines_;
  std::vector<BlankLine> blankLines_;
  std::uint64_t number_ = 0;
  std::size_t gap_ = 0;
  std::size_t usualGap_ = 0;
};

/// Whether a text holds control bytes other than tabs.
bool holdsControls(std::string_view text);

/// Blanks as people and editors put them around numbers: ASCII's, U+00A0, and U+FEFF, the signature
/// of a text that was put behind another. The bytes at the start of the text; 0 for none.
std::size_t blankLength(std::string_view text);

}  // namespace Ombe
