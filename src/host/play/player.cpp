#include "host/play/player.h"

#include <algorithm>

#include "host/io/failure.h"
#include "host/session/subtitle.h"

namespace Ombe {
namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;

constexpr std::int64_t kLeastShown = 1000;
constexpr std::int64_t kBackwardWindow = 60000;

}  // namespace

Player::Player(Session& session, std::int64_t start, std::int32_t speed,
               std::function<void(const Caption&)> onBegin)
    : session_(session),
      onBegin_(std::move(onBegin)),
      speed_(speed),
      offset_(static_cast<std::int32_t>(session.host().getTimeOffset())) {
  seek(start);
}

void Player::advance(microseconds real) {
  if (paused_ || isAtEnd()) return;
  const microseconds from = position_;
  // At most an hour in one step, which keeps the product in range at any speed.
  const microseconds step = std::min<microseconds>(real, std::chrono::hours(1)) * speed_ / 1000;
  position_ = std::clamp<microseconds>(from + step, microseconds(0), milliseconds(kEnd));
  catchUp(from);
}

void Player::seek(std::int64_t milliseconds) {
  position_ = std::chrono::milliseconds(std::clamp<std::int64_t>(milliseconds, 0, kEnd));
  refresh();
}

void Player::setSpeed(std::int32_t speed) {
  speed_ = speed;
  refresh();
}

void Player::setOffset(std::int32_t offset) {
  offset_ = offset;
  session_.host().setTimeOffset(offset);
  refresh();
}

void Player::refresh() {
  captions_.clear();
  allRead_ = false;
  session_.stream().setReadSpeed(speed_);
  // Forward the stream goes to what has not ended at that time, backward to what began before it.
  const std::int64_t target = forward() ? position() - kLeastShown : position() + 1;
  session_.stream().seekStream(entryTime(target), nullptr, true);
  catchUp(position_);
}

bool Player::isAtEnd() const {
  if (!forward()) return position_.count() == 0;
  return position() == kEnd || (allRead_ && captions_.empty());
}

std::vector<const Caption*> Player::showing() const {
  std::vector<const Caption*> result;
  for (const Caption& caption : captions_) {
    if (caption.start <= position() && position() < caption.end) result.push_back(&caption);
  }
  // From the top in the order of their times, whichever way they were read.
  if (!forward()) std::reverse(result.begin(), result.end());
  return result;
}

std::optional<std::int64_t> Player::nearestTime() const {
  const std::vector<const Caption*> shown = showing();
  return shown.empty() ? nextTime() : std::optional(shown.back()->start);
}

std::optional<std::int64_t> Player::nextTime() const {
  for (const Caption& caption : captions_) {
    if (forward() ? caption.start > position() : caption.end <= position()) return caption.start;
  }
  std::uint32_t time = 0;
  if (allRead_ || session_.stream().getNextChunkTime(0, entryTime(position() + (forward() ? 1 : 0)),
                                                     &time) != kSuccess) {
    return std::nullopt;
  }
  return std::int64_t{time} + offset_;
}

std::uint32_t Player::entryTime(std::int64_t milliseconds) const {
  return static_cast<std::uint32_t>(std::clamp<std::int64_t>(milliseconds - offset_, 0, kEnd));
}

Caption Player::makeCaption(const Chunk& chunk) const {
  const std::int64_t start = unwrappedTime(chunk.timestamp(), offset_);
  const auto duration = static_cast<std::int32_t>(chunk.duration());
  return {start, start + (duration > 0 ? duration : kLeastShown), std::string(chunk.text())};
}

/// After a change of the position, which was `from` before.
void Player::catchUp(microseconds from) {
  session_.clock().set(
      static_cast<std::int32_t>(std::min<std::int64_t>(position(), PlaybackClock::kEnd)));
  readDue();
  if (forward() && allRead_ && position_ > from) {
    const auto last = std::ranges::max_element(captions_, {}, &Caption::end);
    const milliseconds end(last == captions_.end() ? 0 : last->end);
    position_ = std::min<microseconds>(position_, std::max<microseconds>(from, end));
  }
  announce(std::chrono::duration_cast<milliseconds>(from).count());
  dropPast();
}

void Player::readDue() {
  while (forward() || captions_.empty() || captions_.back().start >= position() - kBackwardWindow) {
    Chunk chunk;
    const Status status = session_.read(chunk);
    if (status == kNothingDue) return;
    if (status != kSuccess) throw Failure(Step::kDeliver, "the next subtitle cannot be read");
    allRead_ = !chunk;
    if (allRead_) return;
    captions_.push_back(makeCaption(chunk));
  }
}

void Player::announce(std::int64_t from) {
  if (!onBegin_) return;
  for (Caption& caption : captions_) {
    if (caption.hasBegun || caption.start > position()) continue;
    caption.hasBegun = true;
    if (caption.end > from) onBegin_(caption);
  }
}

void Player::dropPast() {
  std::erase_if(captions_, [this](const Caption& caption) {
    return forward() ? caption.end <= position() : caption.start > position();
  });
}

}  // namespace Ombe
