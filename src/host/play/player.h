// Subtitles against a running clock.
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "host/session/session.h"

namespace Ombe {

/// A subtitle on the player's time line; milliseconds, offset included.
struct Caption {
  std::int64_t start;
  std::int64_t end;  ///< the first moment at which it no longer shows
  std::string text;
  bool hasBegun = false;
};

/// Plays the stream of an opened session, which must outlive it: keeps the media time, moves it by
/// the real time that the caller says has passed, reads what comes due and knows what is to be
/// seen. Backward it reads a minute ahead, since the stream is ordered by start and a long subtitle
/// may be met late. A subtitle that does not end after its start shows for a second when its start
/// is played. Stands still at the end of the last subtitle, and at 0 when it plays backward. One
/// thread at a time. Throws Failure where reading fails.
class Player {
 public:
  static constexpr std::int64_t kEnd = 0xFFFFFFFF;  ///< the last time that a subtitle can have
  static constexpr std::int32_t kNormalSpeed = 1000;

  /// `onBegin` is called once for every subtitle that begins to show while the time moves on, or
  /// shows where it was put to.
  explicit Player(Session& session, std::int64_t start = 0, std::int32_t speed = kNormalSpeed,
                  std::function<void(const Caption&)> onBegin = {});

  void advance(std::chrono::microseconds real);
  void seek(std::int64_t milliseconds);
  void setPaused(bool paused) { paused_ = paused; }
  /// In thousandths of the normal speed, as the stream takes it; negative plays backward. Not 0.
  void setSpeed(std::int32_t speed);
  /// Milliseconds to add to all times.
  void setOffset(std::int32_t offset);
  /// Reads anew what is to be seen; for when a setting has changed times or texts.
  void refresh();

  [[nodiscard]] std::int64_t position() const { return position_.count() / 1000; }
  [[nodiscard]] bool isPaused() const { return paused_; }
  [[nodiscard]] std::int32_t speed() const { return speed_; }
  [[nodiscard]] std::int32_t offset() const { return offset_; }
  /// Whether nothing is left to play in the direction.
  [[nodiscard]] bool isAtEnd() const;
  [[nodiscard]] std::vector<const Caption*> showing() const;
  /// Where the subtitle begins that shows, of several the last; else the next.
  [[nodiscard]] std::optional<std::int64_t> nearestTime() const;
  /// Where the next subtitle begins; backward, where the one before begins.
  [[nodiscard]] std::optional<std::int64_t> nextTime() const;

 private:
  [[nodiscard]] bool forward() const { return speed_ > 0; }
  [[nodiscard]] std::uint32_t entryTime(std::int64_t milliseconds) const;
  [[nodiscard]] Caption makeCaption(const Chunk& chunk) const;
  void catchUp(std::chrono::microseconds from);
  void readDue();
  void announce(std::int64_t from);
  void dropPast();

  Session& session_;
  std::function<void(const Caption&)> onBegin_;
  std::chrono::microseconds position_{0};
  std::int32_t speed_;
  std::int32_t offset_;
  bool paused_ = false;
  bool allRead_ = false;          // in the direction
  std::deque<Caption> captions_;  // read and not past, in the order of delivery
};

}  // namespace Ombe
