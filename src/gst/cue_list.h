// What is to be seen when, for renderers that show one text at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Ombe {

/// A time span in milliseconds that overlaps no other, and the subtitles that show all through it.
struct Cue {
  std::int64_t start;
  std::int64_t end;
  std::size_t firstShown;
  std::size_t shownCount;
};

/// Cuts subtitles, which may overlap, into cues. Of more than sixteen at once the latest show, and
/// of a text no more than 8 KiB: nobody reads more, and files that are made to be costly stay
/// cheap. Fill it on one thread; const afterwards.
class CueList {
 public:
  /// Room for what will be added, before the first: memory is touched when it is used.
  void reserve(std::size_t subtitles, std::size_t textBytes);
  /// A subtitle of no duration or without text is left out.
  void add(std::int64_t start, std::int64_t end, std::string_view text);
  /// After the last subtitle.
  void cut();

  [[nodiscard]] const std::vector<Cue>& cues() const { return cues_; }
  /// The first cue that ends after `time`; as many as there are for none.
  [[nodiscard]] std::size_t firstEndingAfter(std::int64_t time) const;
  /// The first cue that starts at `time` or later; as many as there are for none.
  [[nodiscard]] std::size_t firstStartingAt(std::int64_t time) const;

  /// The indices of a cue's texts, in the order of their starts.
  [[nodiscard]] std::span<const std::uint32_t> shown(const Cue& cue) const {
    return std::span(shown_).subspan(cue.firstShown, cue.shownCount);
  }
  [[nodiscard]] std::string_view text(std::uint32_t index) const {
    return std::string_view(texts_).substr(subtitles_[index].offset, subtitles_[index].size);
  }

 private:
  struct Subtitle {
    std::int64_t start;
    std::int64_t end;
    std::size_t offset;  // of the text
    std::size_t size;
  };

  void showUntil(std::int64_t time, std::vector<std::uint32_t>& showing);

  std::string texts_;
  std::vector<Subtitle> subtitles_;
  std::vector<std::uint32_t> shown_;
  std::vector<Cue> cues_;
  std::int64_t now_ = 0;  // while cutting
};

}  // namespace Ombe
