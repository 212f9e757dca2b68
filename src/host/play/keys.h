// What a keyboard sends.
#pragma once

#include <string_view>
#include <vector>

namespace Ombe {

enum class Key { kCharacter, kUp, kDown, kLeft, kRight, kEscape, kEnter, kBackspace };

struct KeyPress {
  Key key;
  char character = '\0';  ///< of kCharacter; printable ASCII
  bool operator==(const KeyPress&) const = default;
};

/// Turns the bytes of a terminal into key presses. Sequences may be split over any number of calls;
/// those of keys that have no meaning here are passed over whole.
class KeyDecoder {
 public:
  std::vector<KeyPress> decode(std::string_view bytes);

  /// Whether the bytes so far are the start of something; a lone Escape is one, since it begins
  /// every sequence.
  [[nodiscard]] bool isWaiting() const { return state_ != State::kGround; }
  /// Called when nothing has followed for a while: what has come is all there is.
  std::vector<KeyPress> flush();

 private:
  enum class State { kGround, kEscape, kSequence, kFunctionKey };

  void take(char byte, std::vector<KeyPress>& out);
  void takeGround(char byte, std::vector<KeyPress>& out);
  void takeBehindEscape(char byte, std::vector<KeyPress>& out);

  State state_ = State::kGround;
};

}  // namespace Ombe
