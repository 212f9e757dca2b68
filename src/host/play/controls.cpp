#include "host/play/controls.h"

#include <fmt/core.h>

#include <algorithm>
#include <iterator>
#include <limits>

#include "host/text/number_text.h"
#include "host/text/utf8_scan.h"
#include "host/text/visible_text.h"

namespace Ombe {
namespace {

/// More has no room on a terminal: a longer text is cut, and of many subtitles the last ones show.
constexpr std::size_t kMostShown = std::size_t{1} << 16;  // bytes

constexpr std::int32_t kSpeeds[] = {250, 500, 750, 1000, 1250, 1500, 2000, 4000, 8000, 16000};

/// The start of a text, of whole characters.
std::string_view head(std::string_view text) {
  if (text.size() <= kMostShown) return text;
  std::size_t size = kMostShown;
  while (size > 0 && (static_cast<unsigned char>(text[size]) & 0xC0) == 0x80) --size;
  return text.substr(0, size);
}

}  // namespace

void Controls::pressInPrompt(KeyPress press) {
  constexpr std::size_t kPromptSize = 16;
  if (press.key == Key::kCharacter && typed_->size() < kPromptSize) {
    *typed_ += press.character;
  } else if (press.key == Key::kBackspace && !typed_->empty()) {
    typed_->pop_back();
  } else if (press.key == Key::kEnter) {
    goToTyped();
    typed_.reset();
  } else if (press.key == Key::kEscape) {
    typed_.reset();
  }
}

void Controls::goToTyped() {
  if (const auto time = parseTime(*typed_)) {
    player_.seek(*time);
  } else if (!typed_->empty()) {
    message_ = "'" + *typed_ + "' is no time such as 90, 1:30 or 1:02:03.5";
  }
}

void Controls::changeSpeed(bool faster) {
  const std::int32_t speed = std::abs(player_.speed());
  const auto* above = std::upper_bound(std::begin(kSpeeds), std::end(kSpeeds), speed);
  const auto* from = std::lower_bound(std::begin(kSpeeds), std::end(kSpeeds), speed);
  if (faster ? above == std::end(kSpeeds) : from == std::begin(kSpeeds)) return;
  const std::int32_t next = faster ? *above : *std::prev(from);
  player_.setSpeed(player_.speed() < 0 ? -next : next);
}

void Controls::changeFrameRate(int step) {
  tuning_.stepFrameRate(step);
  player_.refresh();
}

void Controls::changeCodePage() {
  if (tuning_.stepCodePage()) {
    player_.refresh();
  } else {
    message_ = "The file names its code page by a signature: its text is decoded for good";
  }
}

void Controls::changeOffset(std::int32_t milliseconds) {
  using Limits = std::numeric_limits<std::int32_t>;
  const std::int64_t offset = std::int64_t{player_.offset()} + milliseconds;
  player_.setOffset(
      static_cast<std::int32_t>(std::clamp<std::int64_t>(offset, Limits::min(), Limits::max())));
  marks_.shift(milliseconds);
}

void Controls::mark() {
  const auto start = player_.nearestTime();
  if (!start) {
    message_ = "There is no subtitle that could start now";
    return;
  }
  const SyncPoint point{static_cast<double>(*start - player_.offset()),
                        static_cast<double>(player_.position())};
  std::string objection;
  const auto wish = marks_.add(point, tuning_.framesPerSecond(), objection);
  if (!wish) {
    message_ = "That goes not with the other mark: they " + objection;
    return;
  }
  if (wish->rate) tuning_.chooseFrameRate(*wish->rate);
  player_.setOffset(static_cast<std::int32_t>(wish->offsetMs));
  message_ = wish->rate ? "Both start where they were marked" : "Starts now";
  if (!wish->rate && tuning_.framesPerSecond() != 0)
    message_ += ": s at another, far from here, sets the frame rate as well";
}

Frame Controls::frame() const {
  Frame frame{{}, message_, status()};
  const std::vector<const Caption*> showing = player_.showing();
  auto first = showing.end();
  for (std::size_t size = 0; first != showing.begin() && size < kMostShown; --first) {
    size += (*std::prev(first))->text.size();
  }
  for (; first != showing.end(); ++first) {
    const std::string_view text = head((*first)->text);
    auto lines = parseMarkup(text, colorOrder_);
    std::move(lines.begin(), lines.end(), std::back_inserter(frame.captions));
    if (message_.empty() && !tuning_.isAutodetected() && !isUtf8(text)) {
      frame.message = "This text is not UTF-8: c tries " + tuning_.nextCodePageName();
    }
  }
  if (typed_) frame.status = " go to: " + *typed_ + "_   (90, 1:30 or 1:02:03.5; Enter, Esc)";
  return frame;
}

std::string Controls::status() const {
  const char* state = "playing";
  if (player_.isAtEnd()) {
    state = player_.speed() < 0 ? "start" : "end";
  } else if (player_.isPaused()) {
    state = "paused";
  }
  // What was chosen stands in front: a narrow terminal cuts the end off.
  const auto next = player_.nextTime();
  const std::string offset =
      player_.offset() == 0 ? "" : fmt::format("  {:+} ms", player_.offset());
  return visibleText(fmt::format(" {} {}  {}x{}  next {}  {}  {}", state,
                                 timeText(player_.position()), player_.speed() / 1000.0, offset,
                                 next ? timeText(*next) : "none", tuning_.frameRateName(),
                                 tuning_.codePageName()));
}

}  // namespace Ombe
