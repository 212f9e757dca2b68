// Failures about an input, in the words of whoever named it.
#pragma once

#include "host/io/failure.h"
#include "host/io/input_file.h"

namespace Ombe {

/// Calls `use`. A Failure that names the file opened, which for standard input is a copy, leaves as
/// one that names the input.
template <typename Use>
auto underItsName(const InputFile& input, const Use& use) {
  try {
    return use();
  } catch (const Failure& failure) {
    if (failure.file() != input.path()) throw;
    throw Failure(input.name(), failure.step(), failure.reason());
  }
}

}  // namespace Ombe
