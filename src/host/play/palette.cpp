#include "host/play/palette.h"

#include <array>

namespace Ombe {
namespace {

using Parts = std::array<int, 3>;  // red, green, blue

/// The usual look of the sixteen colours that every terminal has.
constexpr Parts kBasic[] = {{0, 0, 0},       {205, 0, 0},   {0, 205, 0},   {205, 205, 0},
                            {0, 0, 238},     {205, 0, 205}, {0, 205, 205}, {229, 229, 229},
                            {127, 127, 127}, {255, 0, 0},   {0, 255, 0},   {255, 255, 0},
                            {92, 92, 255},   {255, 0, 255}, {0, 255, 255}, {255, 255, 255}};
constexpr int kCubeStart = 16;
constexpr int kGreyStart = 232;

Parts split(Color color) {
  const auto part = [color](unsigned shift) { return static_cast<int>(color >> shift & 0xFF); };
  return {part(16), part(8), part(0)};
}

/// The colours of the 256 behind the basic ones: a cube of six levels a side, then 24 greys.
Parts indexedColor(int index) {
  if (index < kCubeStart) return kBasic[index];
  if (index >= kGreyStart) {
    const int grey = 8 + 10 * (index - kGreyStart);
    return {grey, grey, grey};
  }
  const auto level = [](int step) { return step == 0 ? 0 : 55 + 40 * step; };
  const int cube = index - kCubeStart;
  return {level(cube / 36), level(cube / 6 % 6), level(cube % 6)};
}

/// People set the basic colours as they like, so they are used only where there are no others.
int nearest(const Parts& wanted, int first, int end) {
  int best = first;
  int bestDistance = 3 * 255 * 255 + 1;
  for (int index = first; index < end; ++index) {
    const Parts color = indexedColor(index);
    int distance = 0;
    for (std::size_t i = 0; i < wanted.size(); ++i) {
      distance += (color[i] - wanted[i]) * (color[i] - wanted[i]);
    }
    if (distance < bestDistance) {
      best = index;
      bestDistance = distance;
    }
  }
  return best;
}

std::string colorCode(Color color, ColorDepth depth) {
  if (depth < ColorDepth::k16) return {};
  const Parts parts = split(color);
  if (depth == ColorDepth::k16) {
    const int index = nearest(parts, 0, kCubeStart);
    return ";" + std::to_string(index < 8 ? 30 + index : 90 + index - 8);
  }
  if (depth == ColorDepth::k256) return ";38;5;" + std::to_string(nearest(parts, kCubeStart, 256));
  return ";38;2;" + std::to_string(parts[0]) + ";" + std::to_string(parts[1]) + ";" +
         std::to_string(parts[2]);
}

}  // namespace

void appendStyled(std::string& out, const Span& span, ColorDepth depth) {
  std::string code;
  if (span.style.bold) code += ";1";
  if (span.style.italic) code += ";3";
  if (span.style.color) code += colorCode(*span.style.color, depth);
  if (code.empty() || depth == ColorDepth::kNoStyle) {
    out += span.text;
    return;
  }
  out.append("\x1B[0").append(code).append("m").append(span.text).append("\x1B[0m");
}

}  // namespace Ombe
