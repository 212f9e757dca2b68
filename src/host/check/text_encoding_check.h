// Whether the texts are in the code page that they will be read with.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "host/check/findings.h"
#include "host/text/code_page.h"
#include "host/text/garbled_texts.h"

namespace Ombe {

/// Takes the texts of one file in the order of its lines. One thread at a time.
class TextEncodingCheck {
 public:
  /// An empty code page stands for UTF-8; another is one that ICU knows.
  TextEncodingCheck(const std::string& codePage, Findings& findings);

  void take(std::string_view text, std::uint64_t line);
  /// Adds what concerns the file as a whole. Last call.
  void finish();

 private:
  void convert(std::string_view text, std::uint64_t line);

  std::string codePage_;
  std::unique_ptr<CodePageReader> reader_;  // null for UTF-8
  Findings& findings_;
  GarbledTexts garbled_;
  std::uint64_t garbledLine_ = 0;
};

}  // namespace Ombe
