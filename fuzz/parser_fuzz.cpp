// The parser makes the entries that splitting, scanning and rating by the C library makes.
#include "cost.h"
#include "microdvd/lines/style_codes.h"
#include "microdvd/microdvd_parser.h"
#include "stream/entries/media_buffer_allocator.h"
#include "stream/entries/text_chunk.h"
#include "support.h"

using namespace Ombe;  // NOLINT(google-build-using-namespace)
using ombe_fuzz::ExactText;
using ombe_fuzz::Input;
using ombe_fuzz::require;

namespace {

using Entries = std::string;  // "start+duration text", each ended by a NUL

void append(Entries& entries, std::uint32_t start, std::uint32_t duration, std::string_view text) {
  entries += std::to_string(start) + "+" + std::to_string(duration) + " ";
  entries.append(text).push_back('\0');
}

bool takeHeader(std::string& text, FrameRate& rate) {
  constexpr const char* kDigits = "0123456789";
  const auto widened = [](auto number) { return static_cast<std::uint64_t>(number); };
  long long whole = 0;
  int upper = 0;
  int lower = 0;
  const std::size_t at = text.find_first_not_of(kDigits);
  if (at == std::string::npos) {
    if (std::sscanf(text.c_str(), "%d", &upper) == 1) rate = {widened(upper), 1};
    return true;
  }
  const bool isPoint = text[at] == '.' || text[at] == ',';
  if (!isPoint && text[at] != '/' && text[at] != '\\') return false;
  text[at] = isPoint ? '.' : '/';
  if (text.find_first_not_of(kDigits, at + 1) != std::string::npos) return false;
  if (!isPoint) {
    const int count = std::sscanf(text.c_str(), "%d/%d", &upper, &lower);
    if (count == 2) rate = {widened(upper), widened(lower)};
    return true;
  }
  text.erase(at, 1);
  std::uint64_t denominator = 1;
  for (std::size_t i = at; i < text.size(); ++i) denominator *= 10;
  if (std::sscanf(text.c_str(), "%lld", &whole) == 1) rate = {widened(whole), denominator};
  return true;
}

bool parsePlainly(std::string text, FrameRate& rate, Entries& entries) {
  char* rest = nullptr;
  for (const char* line = ::strtok_r(text.data(), "\r\n", &rest); line != nullptr;
       line = ::strtok_r(nullptr, "\r\n", &rest)) {
    int first = 0;
    int last = 0;
    std::string shown(std::strlen(line) + 1, '\0');
    const int count = std::sscanf(line, "{%d}{%d}%[^\r\n]\n", &first, &last, shown.data());
    if (count == 2) continue;
    if (count != 3) return false;
    shown.resize(std::strlen(shown.c_str()));
    const bool mayBeHeader = !rate.isSet() && first == 1 && last == 1 && shown.size() < 100;
    if (mayBeHeader && takeHeader(shown, rate)) continue;
    if (!rate.isSet()) rate = {24000, 1001};
    std::replace(shown.begin(), shown.end(), '|', '\n');
    const auto time = [rate](int frame) {
      const std::uint64_t wide = static_cast<std::uint32_t>(frame);
      return static_cast<std::uint32_t>(wide * rate.denominator * 1000 / rate.numerator);
    };
    append(entries, time(first), time(last) - time(first), translateStyleCodes(shown).str());
  }
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  FrameRate rate{input.number(), input.number()};
  MediaBufferAllocator allocator;
  FrameRate stated;
  MicroDVDParser parser(allocator, rate, stated.numerator, stated.denominator);
  const ExactText text(input.rest);
  Entries expected;
  const bool isExpected = parsePlainly(std::string(text.view()), rate, expected);
  {
    const ombe_fuzz::CostLimit limit(size, {0.45, 15, 32});
    require(parser.parse(text.block.get()) == isExpected, "the same files are refused");
  }
  Entries entries;
  for (MediaChunk* entry : parser.entries().list()) {
    const ChunkAccess access(*entry);
    append(entries, entry->timestamp, entry->duration,
           {reinterpret_cast<const char*>(access.bytes()), entry->bufferSize()});
  }
  require(entries == expected, "the same entries");
  require(
      parser.rate().numerator == rate.numerator && parser.rate().denominator == rate.denominator,
      "the same rate");
  return 0;
}
