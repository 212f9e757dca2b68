// Subtitles of which somebody has said when they start.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/session/sync.h"

namespace Ombe {

/// One mark shifts subtitles, two stretch them as well; a third takes the place of the nearer one,
/// and so does another of the same subtitle. They are kept as frames, which no later change of the
/// rate moves. One thread at a time.
class Marks {
 public:
  /// What the marks ask for: nothing but an offset where there is no rate.
  struct Wish {
    std::optional<Ratio> rate;
    double offsetMs;
  };

  /// Adds that a subtitle which starts at `from`, without offset, is to start at `to`. `rate` is in
  /// force, 0 where times are no frames. Nothing, and nothing added, when it goes with the other
  /// mark by no stretch; `objection` then says why.
  std::optional<Wish> add(SyncPoint point, double rate, std::string& objection);
  /// After a shift of all subtitles.
  void shift(double milliseconds);

 private:
  struct Mark {
    double frame;
    double to;
  };

  [[nodiscard]] std::vector<Mark> with(Mark mark) const;

  std::vector<Mark> marks_;
};

}  // namespace Ombe
