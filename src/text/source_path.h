// From the URI of a media source to a path of the local file system.
#pragma once

#include "ombe_core/kelm_string.h"
#include "ombe_core/status.h"

namespace Ombe {

/// `uri` is read as UTF-8 up to its first NUL. Every character that may not stand in a URL path is
/// escaped before the URI is parsed and decoded again in the path, so blanks, '?', '#' and escapes
/// that the URI holds already all come out as they were. The scheme must be `file`, in any letter
/// case, or absent. 0 with the path in `out`; otherwise kNotALocalFile and `out` is unchanged.
/// Pure; any thread. Throws std::bad_alloc.
Status uriToFilePath(const ByteString& uri, ByteString& out);

}  // namespace Ombe
