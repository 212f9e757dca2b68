// Well-formedness of UTF-8. Pure functions; any thread.
#pragma once

#include <cstddef>
#include <string_view>

namespace Ombe {

/// Whether the whole text is well-formed UTF-8; an empty one is.
bool isWellFormedUtf8(std::string_view text);

/// Judges the first character of a text alone. `bound` is the address of the text's last byte, not
/// the one behind it; the character has to end before it, so a text of one character fails. False
/// for a null `start`; an empty text, for which there is no such address, is the caller's to
/// refuse.
bool isWellFormedUtf8Sequence(const unsigned char* start, const unsigned char* bound);

}  // namespace Ombe
