#include "host/text/utf8_scan.h"

namespace Ombe {
namespace {

struct Lead {
  std::size_t length;  // of the whole character; 0 for a byte that begins none
  unsigned char secondLow = 0x80;
  unsigned char secondHigh = 0xBF;
};

Lead leadOf(unsigned char byte) {
  if (byte < 0x80) return {1};
  if (byte < 0xC2) return {0};
  if (byte < 0xE0) return {2};
  if (byte < 0xF0) {
    return {3, static_cast<unsigned char>(byte == 0xE0 ? 0xA0 : 0x80),
            static_cast<unsigned char>(byte == 0xED ? 0x9F : 0xBF)};
  }
  if (byte > 0xF4) return {0};
  return {4, static_cast<unsigned char>(byte == 0xF0 ? 0x90 : 0x80),
          static_cast<unsigned char>(byte == 0xF4 ? 0x8F : 0xBF)};
}

}  // namespace

Utf8Piece nextUtf8Piece(std::string_view text) {
  const auto at = [text](std::size_t index) { return static_cast<unsigned char>(text[index]); };
  const Lead lead = leadOf(at(0));
  if (lead.length == 0) return {1, false};
  for (std::size_t i = 1; i < lead.length; ++i) {
    const unsigned low = i == 1 ? lead.secondLow : 0x80;
    const unsigned high = i == 1 ? lead.secondHigh : 0xBF;
    if (i >= text.size() || at(i) < low || at(i) > high) return {i, false};
  }
  return {lead.length, true};
}

bool isUtf8(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const bool ascii = static_cast<unsigned char>(text[at]) < 0x80;
    const Utf8Piece piece = ascii ? Utf8Piece{1, true} : nextUtf8Piece(text.substr(at));
    if (!piece.wellFormed) return false;
    at += piece.length;
  }
  return true;
}

}  // namespace Ombe
