// Reads a file into memory and records the encoding signature found at its start.
#pragma once

#include <cstdint>

#include "ombe_core/kelm_string.h"

namespace Ombe {

class SettingStore;

/// The limit that means to the end of the file.
inline constexpr std::uint32_t kWholeFile = 0xFFFFFFFF;

/// Reads `limit` bytes, and fails when the file has fewer. `out` receives them without a leading
/// encoding signature. With a store, "CodePage"/"Autodetected" tells whether there was one, and
/// "CodePage"/"Name" is set to its code page; without a signature the name stays as it was. A
/// failure is logged, answers false, and leaves `out` and the settings alone. Any thread. Throws
/// std::bad_alloc and what the store or the log sink throws.
bool readFile(SettingStore* store, const ByteString& path, ByteString& out, std::uint32_t limit);

/// Does what readFile does, with the bytes decoded to UTF-8 (see decodeText). False, `out`
/// unchanged, also when they do not decode or `out` is null.
bool readDecodedText(SettingStore* store, const ByteString& path, ByteString* out,
                     std::uint32_t limit);

}  // namespace Ombe
