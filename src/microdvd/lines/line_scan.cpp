#include "microdvd/lines/line_scan.h"

#include <cstring>

#include "microdvd/lines/number_scan.h"

namespace Ombe {
namespace {

bool skip(const char*& at, char expected) {
  if (*at != expected) return false;
  ++at;
  return true;
}

/// Reads the two frame numbers. The place behind their second closing brace, or null without one.
const char* scanFrames(const char* at, ScannedLine& result) {
  if (!skip(at, '{') || !scanInt(at, result.firstFrame)) return nullptr;
  result.count = 1;
  if (!skip(at, '}') || !skip(at, '{') || !scanInt(at, result.lastFrame)) return nullptr;
  result.count = 2;
  return skip(at, '}') ? at : nullptr;
}

void setText(ScannedLine& result, const char* text, std::size_t length) {
  if (length == 0) return;
  result.text = text;
  result.textLength = length;
  result.count = 3;
}

}  // namespace

ScannedLine scanLine(const char* line) {
  ScannedLine result;
  const char* text = scanFrames(line, result);
  if (text != nullptr) setText(result, text, std::strcspn(text, "\r\n"));
  return result;
}

ScannedLine scanLine(const char* line, const char* end) {
  ScannedLine result;
  const char* text = scanFrames(line, result);
  if (text != nullptr) setText(result, text, static_cast<std::size_t>(end - text));
  return result;
}

}  // namespace Ombe
