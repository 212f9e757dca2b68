// Status codes that operations of the engine's interfaces return.
#pragma once

#include <cstdint>

namespace Ombe {

/// Result of an interface operation: a signed 32-bit value, 0 for success.
using Status = std::int32_t;

inline constexpr Status kSuccess = 0;

/// Interface lookup only: the identifier is not known to the component.
inline constexpr Status kUnknownInterface = 3;

/// Stream reads: nothing is due yet. `setTimeSource`: no clock was given.
inline constexpr Status kNothingDue = -1;

/// The operation is not supported, an out-pointer is missing, an identifier does not match, or the
/// source cannot be opened or read.
inline constexpr Status kGeneralFailure = static_cast<Status>(0x80100001U);

/// A source's URI names no local file. Internal to plug-ins; never handed to the engine.
inline constexpr Status kNotALocalFile = static_cast<Status>(0x80800001U);

}  // namespace Ombe
