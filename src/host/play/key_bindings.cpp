// What each key does, and how it is told.
#include "host/play/controls.h"

namespace Ombe {
namespace {

constexpr KeyPress pressed(Key key) { return {key}; }
constexpr KeyPress pressed(char character) { return {Key::kCharacter, character}; }

}  // namespace

struct Controls::Binding {
  KeyPress press;
  void (*act)(Controls&);
  // The first key of a pair says these for the second.
  const char* name = nullptr;
  const char* meaning = nullptr;
  const char* shown = nullptr;  // when help is asked for
};

const Controls::Binding Controls::kBindings[] = {
    {pressed(' '), [](Controls& c) { c.player_.setPaused(!c.player_.isPaused()); }, "space",
     "pauses and goes on", "space pause"},
    {pressed(Key::kLeft), [](Controls& c) { c.skip(-5000); }, "left, right", "move by 5 seconds",
     "\u2190 \u2192 5 s"},
    {pressed(Key::kRight), [](Controls& c) { c.skip(5000); }},
    {pressed(Key::kDown), [](Controls& c) { c.skip(-60000); }, "down, up", "move by 60 seconds",
     "\u2193 \u2191 60 s"},
    {pressed(Key::kUp), [](Controls& c) { c.skip(60000); }},
    {pressed('['), [](Controls& c) { c.changeSpeed(false); }, "[ ]", "play slower, faster",
     "[ ] slower, faster"},
    {pressed(']'), [](Controls& c) { c.changeSpeed(true); }},
    {pressed('r'), [](Controls& c) { c.player_.setSpeed(-c.player_.speed()); }, "r",
     "reverses the direction", "r reverse"},
    {pressed('f'), [](Controls& c) { c.changeFrameRate(1); }, "f F", "step through frame rates",
     "f F frame rate"},
    {pressed('F'), [](Controls& c) { c.changeFrameRate(-1); }},
    {pressed('c'), [](Controls& c) { c.changeCodePage(); }, "c", "steps through code pages",
     "c code page"},
    {pressed('o'), [](Controls& c) { c.changeOffset(-100); }, "o O",
     "move the subtitles by -100, +100 milliseconds", "o O offset -100, +100 ms"},
    {pressed('O'), [](Controls& c) { c.changeOffset(100); }},
    {pressed('s'), [](Controls& c) { c.mark(); }, "s",
     "makes the subtitle that shows, or else the next, start now; at a second one it sets the "
     "frame rate as well",
     "s start now"},
    {pressed('g'), [](Controls& c) { c.typed_.emplace(); }, "g", "goes to a time",
     "g go to a time"},
    {pressed('?'), [](Controls& c) { c.showKeys(); }, "?", "shows the keys"},
    {pressed('q'), [](Controls& c) { c.quit_ = true; }, "q", "quits", "q quit"},
};

std::vector<std::pair<std::string, std::string>> Controls::keys() {
  std::vector<std::pair<std::string, std::string>> result;
  for (const Binding& binding : kBindings) {
    if (binding.name != nullptr) result.emplace_back(binding.name, binding.meaning);
  }
  return result;
}

void Controls::showKeys() {
  for (const Binding& binding : kBindings) {
    if (binding.shown == nullptr) continue;
    message_.append(message_.empty() ? "" : "  ").append(binding.shown);
  }
}

void Controls::press(KeyPress press) {
  message_.clear();
  if (typed_) return pressInPrompt(press);
  for (const Binding& binding : kBindings) {
    if (binding.press == press) binding.act(*this);
  }
}

}  // namespace Ombe
