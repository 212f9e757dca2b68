// How files are exported.
#pragma once

#include <cstddef>
#include <string>

#include "host/session/session.h"
#include "host/writers/subtitle_writer.h"

namespace Ombe {

struct ExportOptions {
  SessionOptions session = {};
  WriterOptions writer = {};
  std::string output = "-";  ///< file, folder for several, or "-" for standard output
  std::size_t jobs = 0;      ///< threads; 0 for as many as there are processors
};

}  // namespace Ombe
