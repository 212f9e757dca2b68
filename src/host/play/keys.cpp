#include "host/play/keys.h"

namespace Ombe {
namespace {

constexpr char kEscapeByte = '\x1B';

}  // namespace

std::vector<KeyPress> KeyDecoder::decode(std::string_view bytes) {
  std::vector<KeyPress> out;
  for (const char byte : bytes) take(byte, out);
  return out;
}

std::vector<KeyPress> KeyDecoder::flush() {
  const bool bareEscape = state_ == State::kEscape;
  state_ = State::kGround;
  if (!bareEscape) return {};
  return {{Key::kEscape}};
}

void KeyDecoder::take(char byte, std::vector<KeyPress>& out) {
  switch (state_) {
    case State::kGround:
      takeGround(byte, out);
      break;
    case State::kEscape:
      takeBehindEscape(byte, out);
      break;
    case State::kSequence:
      // Numbers and modifiers come before the byte that names the key.
      if (byte < '\x40' || byte > '\x7E') break;
      [[fallthrough]];
    case State::kFunctionKey:
      takeFinal(byte, out);
      break;
  }
}

void KeyDecoder::takeGround(char byte, std::vector<KeyPress>& out) {
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

void KeyDecoder::takeFinal(char byte, std::vector<KeyPress>& out) {
  constexpr Key kArrows[] = {Key::kUp, Key::kDown, Key::kRight, Key::kLeft};
  state_ = State::kGround;
  if (byte >= 'A' && byte <= 'D') out.push_back({kArrows[byte - 'A']});
}

}  // namespace Ombe
