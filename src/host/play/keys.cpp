#include "host/play/keys.h"

#include <utility>

namespace Ombe {

std::vector<KeyPress> KeyDecoder::decode(std::string_view bytes) {
  std::vector<KeyPress> out;
  for (const char byte : bytes) take(byte, out);
  return out;
}

std::vector<KeyPress> KeyDecoder::flush() {
  if (std::exchange(state_, State::kGround) != State::kEscape) return {};
  return {{Key::kEscape}};
}

void KeyDecoder::take(char byte, std::vector<KeyPress>& out) {
  constexpr Key kArrows[] = {Key::kUp, Key::kDown, Key::kRight, Key::kLeft};
  if (state_ == State::kGround) return takeGround(byte, out);
  if (state_ == State::kEscape) return takeBehindEscape(byte, out);
  // Numbers and modifiers come before the byte that names the key.
  if (state_ == State::kSequence && (byte < '\x40' || byte > '\x7E')) return;
  state_ = State::kGround;
  if (byte >= 'A' && byte <= 'D') out.push_back({kArrows[byte - 'A']});
}

void KeyDecoder::takeGround(char byte, std::vector<KeyPress>& out) {
  constexpr char kEscapeByte = '\x1B';
  if (byte == kEscapeByte) {
    state_ = State::kEscape;
  } else if (byte == '\r' || byte == '\n') {
    out.push_back({Key::kEnter});
  } else if (byte == '\b' || byte == '\x7F') {
    out.push_back({Key::kBackspace});
  } else if (byte >= ' ' && byte <= '~') {
    out.push_back({Key::kCharacter, byte});
  }
}

void KeyDecoder::takeBehindEscape(char byte, std::vector<KeyPress>& out) {
  if (byte == '[') {
    state_ = State::kSequence;
  } else if (byte == 'O') {
    state_ = State::kFunctionKey;
  } else {
    out.push_back({Key::kEscape});
    state_ = State::kGround;
    takeGround(byte, out);
  }
}

}  // namespace Ombe
