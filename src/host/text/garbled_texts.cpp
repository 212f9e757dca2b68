#include "host/text/garbled_texts.h"

#include "host/text/likely_code_pages.h"
#include "host/text/utf8_scan.h"

namespace Ombe {

bool GarbledTexts::take(std::string_view text) {
  if (isUtf8(text)) return false;
  ++count_;
  if (sample_.size() < kCodePageSample) sample_.append(text, 0, kCodePageSample).append("\n");
  return true;
}

std::vector<std::string> GarbledTexts::likelyCodePages() const {
  return count_ == 0 ? std::vector<std::string>() : Ombe::likelyCodePages(sample_);
}

}  // namespace Ombe
