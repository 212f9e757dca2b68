// Writes a MicroDVD file to measure with: generate COUNT OUT [utf8|windows-1250|utf-16]
#include <charconv>
#include <cstring>
#include <fstream>
#include <iostream>
#include <string_view>

#include "subtitles.h"

int main(int argc, char** argv) {
  using ombe_bench::Encoding;
  const std::string_view name = argc > 3 ? argv[3] : "utf8";
  std::size_t count = 0;
  if (argc < 3 || std::from_chars(argv[1], argv[1] + std::strlen(argv[1]), count).ptr == argv[1]) {
    std::cerr << "usage: generate COUNT OUT [utf8|windows-1250|utf-16]\n";
    return 2;
  }
  const Encoding encoding = name == "windows-1250" ? Encoding::kWindows1250
                            : name == "utf-16"     ? Encoding::kUtf16
                                                   : Encoding::kUtf8;
  std::ofstream out(argv[2], std::ios::binary);
  out << ombe_bench::makeSubtitles(count, encoding);
  out.close();
  return out ? 0 : 1;
}
