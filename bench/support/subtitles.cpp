#include "subtitles.h"

#include <cstdint>
#include <string_view>

namespace ombe_bench {
namespace {

// Letters outside ASCII stand at the same numbers in windows-1250 and in Unicode.
constexpr std::string_view kWords[] = {
    "a",     "I",      "to",        "the",       "you",       "and",        "not",  "what",
    "here",  "where",  "tomorrow",  "never",     "caf\xE9",   "listen",     "wait", "it's",
    "don't", "before", "nothing",   "something", "v\xED\xFD", "everything", "come", "kr\xE1l",
    "back",  "please", "certainly", "morning",   "d\xF4vod",  "remember",   "door", "m\xF3re",
};
constexpr std::string_view kStyles[] = {"{y:i}", "{y:b}", "/", "{c:$0000FF}", "{y:ib}"};

/// The same on every machine, which the standard library's distributions are not.
class Random {
 public:
  std::size_t below(std::size_t limit) {
    state_ = state_ * 6364136223846793005U + 1442695040888963407U;
    return static_cast<std::size_t>((state_ >> 33) % limit);
  }

 private:
  std::uint64_t state_ = 20261124;
};

void appendWords(std::string& out, Random& random, std::size_t length) {
  const std::size_t end = out.size() + length;
  while (out.size() < end) {
    out += kWords[random.below(std::size(kWords))];
    out += ' ';
  }
  out.back() = '.';
}

void appendSubtitle(std::string& out, Random& random, std::size_t first, std::size_t last) {
  out += "{" + std::to_string(first) + "}{" + std::to_string(last) + "}";
  if (random.below(12) == 0) out += kStyles[random.below(std::size(kStyles))];
  const bool isTwoLines = random.below(3) == 0;
  appendWords(out, random, 12 + random.below(36));
  if (isTwoLines) {
    out += '|';
    appendWords(out, random, 8 + random.below(24));
  }
  out += '\n';
}

std::string encoded(const std::string& text, Encoding encoding) {
  if (encoding == Encoding::kWindows1250) return text;
  std::string out = encoding == Encoding::kUtf16 ? "\xFF\xFE" : "";
  for (const char c : text) {
    const auto code = static_cast<unsigned char>(c);
    if (encoding == Encoding::kUtf16) {
      out += {c, '\0'};
    } else if (code < 0x80) {
      out += c;
    } else {
      out += {static_cast<char>(0xC0 | code >> 6), static_cast<char>(0x80 | (code & 0x3F))};
    }
  }
  return out;
}

}  // namespace

std::string makeSubtitles(std::size_t count, Encoding encoding) {
  std::string text = "{1}{1}25\n";
  Random random;
  std::size_t frame = 1;
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t last = frame + 10 + random.below(30);
    appendSubtitle(text, random, frame, last);
    frame = last + 1 + random.below(20);
  }
  return encoded(text, encoding);
}

}  // namespace ombe_bench
