// Which encoding a text has, and the way to UTF-8. Keeps no state: what is found lives in the
// settings. Any thread.
#pragma once

#include <cstdint>

#include "ombe_core/kelm_string.h"

namespace Ombe {

class SettingStore;

/// Length of the encoding signature that the text begins with, 0 when there is none. `name` is set
/// to the code page's name, and left alone when there is none. Throws std::bad_alloc.
std::uint32_t detectTextSignature(const unsigned char* bytes, std::uint32_t length, String& name);

/// Converts from the code page that "CodePage"/"Name" holds; without a store or a name the bytes
/// are taken as UTF-8. False, with `out` unchanged, when the result does not begin as UTF-8 text
/// does (see isWellFormedUtf8Sequence). Throws std::bad_alloc.
bool decodeText(SettingStore* store, const unsigned char* data, std::uint32_t length,
                ByteString& out);

/// Converts from the named code page, cuts at the first NUL and checks as decodeText does. False,
/// with `out` unchanged, when that fails or the name is empty. Throws std::bad_alloc.
bool convertAndCheck(const String& codePage, const unsigned char* bytes, std::uint32_t length,
                     ByteString& out);

}  // namespace Ombe
