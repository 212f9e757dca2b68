#include "microdvd/line_scan.h"

#include <cstring>

#include "microdvd/number_scan.h"

namespace Ombe {
namespace {

bool skip(const char*& at, char expected) {
  if (*at != expected) return false;
  ++at;
  return true;
}

}  // namespace

ScannedLine scanLine(const char* line) {
  ScannedLine result;
  const char* at = line;
  if (!skip(at, '{') || !scanInt(at, result.firstFrame)) return result;
  result.count = 1;
  if (!skip(at, '}') || !skip(at, '{') || !scanInt(at, result.lastFrame)) return result;
  result.count = 2;
  if (!skip(at, '}')) return result;
  result.textLength = std::strcspn(at, "\r\n");
  if (result.textLength == 0) return result;
  result.text = at;
  result.count = 3;
  return result;
}

}  // namespace Ombe
