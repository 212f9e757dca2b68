#include "gst/cue_list.h"

#include <algorithm>
#include <limits>

namespace Ombe {
namespace {

constexpr std::size_t kMostAtOnce = 16;
constexpr std::size_t kLongestText = 8192;

}  // namespace

void CueList::reserve(std::size_t subtitles, std::size_t textBytes) {
  subtitles_.reserve(subtitles);
  texts_.reserve(textBytes);
}

void CueList::add(std::int64_t start, std::int64_t end, std::string_view text) {
  if (end <= start || text.empty()) return;
  text = text.substr(0, kLongestText);
  subtitles_.push_back({start, end, texts_.size(), text.size()});
  texts_ += text;
}

void CueList::cut() {
  if (!std::ranges::is_sorted(subtitles_, {}, &Subtitle::start)) {
    std::ranges::stable_sort(subtitles_, {}, &Subtitle::start);
  }
  cues_.reserve(subtitles_.size());
  shown_.reserve(subtitles_.size());
  std::vector<std::uint32_t> showing;
  for (std::uint32_t i = 0; i < subtitles_.size(); ++i) {
    showUntil(subtitles_[i].start, showing);
    now_ = subtitles_[i].start;
    if (showing.size() == kMostAtOnce) showing.erase(showing.begin());
    showing.push_back(i);
  }
  showUntil(std::numeric_limits<std::int64_t>::max(), showing);
}

void CueList::showUntil(std::int64_t time, std::vector<std::uint32_t>& showing) {
  while (!showing.empty() && now_ < time) {
    std::int64_t end = time;
    for (const std::uint32_t i : showing) end = std::min(end, subtitles_[i].end);
    cues_.push_back({now_, end, shown_.size(), showing.size()});
    shown_.insert(shown_.end(), showing.begin(), showing.end());
    now_ = end;
    std::erase_if(showing, [&](std::uint32_t i) { return subtitles_[i].end <= end; });
  }
}

std::size_t CueList::firstEndingAfter(std::int64_t time) const {
  const auto found = std::ranges::upper_bound(cues_, time, {}, &Cue::end);
  return static_cast<std::size_t>(found - cues_.begin());
}

std::size_t CueList::firstStartingAt(std::int64_t time) const {
  const auto found = std::ranges::lower_bound(cues_, time, {}, &Cue::start);
  return static_cast<std::size_t>(found - cues_.begin());
}

}  // namespace Ombe
