// The line scan reads what the platform's sscanf reads.
#include "cost.h"
#include "microdvd/lines/line_scan.h"
#include "support.h"

using ombe_fuzz::ExactText;
using ombe_fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const ExactText line({reinterpret_cast<const char*>(data), size});
  int first = 0;
  int last = 0;
  std::string text(line.view().size() + 1, '\0');
  const int count = std::sscanf(line.block.get(), "{%d}{%d}%[^\r\n]\n", &first, &last, text.data());
  Ombe::ScannedLine scanned;
  {
    const ombe_fuzz::CostLimit limit(size, {0, 0, 6});
    scanned = Ombe::scanLine(line.block.get());
  }
  require(scanned.count == std::max(count, 0), "as many values as sscanf");
  require(count < 1 || scanned.firstFrame == first, "the first number of sscanf");
  require(count < 2 || scanned.lastFrame == last, "the second number of sscanf");
  text.resize(std::strlen(text.c_str()));
  require(count < 3 || text == std::string_view(scanned.text, scanned.textLength),
          "the text of sscanf");
  return 0;
}
