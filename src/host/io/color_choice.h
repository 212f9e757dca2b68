// Whether output is coloured.
#pragma once

namespace Ombe {

enum class ColorMode { kAuto, kAlways, kNever };

/// Whether escape sequences may be written to the descriptor. With kAuto they may when it is a
/// terminal that knows them and the environment does not forbid them (NO_COLOR, TERM=dumb).
bool wantsColor(ColorMode mode, int descriptor);

}  // namespace Ombe
