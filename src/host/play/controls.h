// What keys do, and what is written around the subtitles.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/play/keys.h"
#include "host/play/marks.h"
#include "host/play/player.h"
#include "host/play/screen.h"
#include "host/play/tuning.h"

namespace Ombe {

/// The player's controls: takes key presses, makes the picture. Player and tuning must outlive it.
/// One thread at a time.
class Controls {
 public:
  Controls(Player& player, Tuning& tuning, ColorOrder order)
      : player_(player), tuning_(tuning), colorOrder_(order) {}

  void press(KeyPress press);
  [[nodiscard]] bool wantsToQuit() const { return quit_; }
  [[nodiscard]] Frame frame() const;

  /// Each key or pair of keys, and what it does, in words for a manual.
  static std::vector<std::pair<std::string, std::string>> keys();

 private:
  struct Binding;
  static const Binding kBindings[];

  void showKeys();
  void pressInPrompt(KeyPress press);
  void goToTyped();
  void skip(std::int64_t milliseconds) { player_.seek(player_.position() + milliseconds); }
  void changeSpeed(bool faster);
  void changeFrameRate(int step);
  void changeCodePage();
  void changeOffset(std::int32_t milliseconds);
  void mark();
  [[nodiscard]] std::string status() const;

  Player& player_;
  Tuning& tuning_;
  Marks marks_;
  const ColorOrder colorOrder_;
  bool quit_ = false;
  std::string message_ = "? shows the keys";
  std::optional<std::string> typed_;  // while a time is asked for
};

}  // namespace Ombe
