// Which of a program's streams is shown.
#pragma once

#include <string_view>
#include <vector>

#include "ombe_core/uid_list.h"

namespace Ombe {

/// A stream with its language and region; the views are the caller's.
struct StreamLanguage {
  UID uid;
  std::string_view language;
  std::string_view region;
};

/// UID of the stream that fits `preferred` ("de", "de-AT" or empty) best: the last one whose
/// language and region agree, else the first whose language does (in either form of its code), else
/// the first. `streams` is not empty and ascends by UID. A UID of 0 counts as nothing chosen.
UID chooseStream(const std::vector<StreamLanguage>& streams, std::string_view preferred);

}  // namespace Ombe
