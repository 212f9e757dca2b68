// A strict reader finds in each format the subtitles that were written. Input: colors and style,
// offset, a MicroDVD file.
#include <cctype>
#include <deque>

#include "cost.h"
#include "cue_readers.h"
#include "host/writers/subtitle_writer.h"
#include "microdvd/microdvd_parser.h"
#include "stream/entries/media_buffer_allocator.h"
#include "stream/entries/text_chunk.h"

using namespace Ombe;  // NOLINT(google-build-using-namespace)
using ombe_fuzz::Cue;
using ombe_fuzz::ExactText;
using ombe_fuzz::Input;
using ombe_fuzz::require;

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";
constexpr char kRemoved = '\x1A';  // where a tag was, so that no character grows together there

void replaceAll(std::string& text, std::string_view from, std::string_view to) {
  for (std::size_t at = text.find(from); at != std::string::npos;
       at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
}

/// UTF-8 in which one U+FFFD stands for any number of bytes that are none.
std::string wellFormed(const std::string& text) {
  using nlohmann::json;
  const auto replace = json::error_handler_t::replace;
  std::string result = json::parse(json(text).dump(-1, ' ', false, replace)).get<std::string>();
  std::erase(result, kRemoved);
  const std::string pair = std::string(kReplacement) + std::string(kReplacement);
  std::string shorter;
  for (std::string_view rest = result; !rest.empty();) {
    if (!rest.starts_with(pair))
      shorter.append(rest.substr(0, rest.starts_with(kReplacement) ? 3 : 1));
    rest.remove_prefix(rest.starts_with(kReplacement) ? 3 : 1);
  }
  return shorter;
}

/// The lines that are not blank.
std::string shownLines(std::string_view text) {
  std::string shown;
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find_first_of("\r\n"));
    if (line.find_first_not_of(" \t\v\f") != line.npos) shown.append(line).push_back('\n');
    text.remove_prefix(std::min(line.size() + 1, text.size()));
  }
  return shown;
}

std::string srtText(std::string text) {
  replaceAll(text, "-->", "-- >");
  replaceAll(text, "</B>", "</b>");
  return text;
}

/// The same for both orders of red and blue.
std::string withoutOrder(std::string text) {
  const auto isDigit = [](unsigned char c) { return std::isxdigit(c) != 0; };
  for (std::size_t at = text.find('#'); at != std::string::npos; at = text.find('#', at + 1)) {
    if (text.size() - at < 7) break;
    const auto digits = text.begin() + static_cast<std::ptrdiff_t>(at) + 1;
    if (!std::all_of(digits, digits + 6, isDigit)) continue;
    std::transform(digits, digits + 6, digits, [](unsigned char c) { return std::tolower(c); });
    if (std::string(digits + 4, digits + 6) < std::string(digits, digits + 2)) {
      std::swap_ranges(digits, digits + 2, digits + 4);
    }
  }
  return text;
}

/// Without the tags that WebVTT has as well.
std::string vttText(std::string text) {
  std::map<std::string, int> open;
  for (std::size_t at = text.find('<'); at != std::string::npos; at = text.find('<', at + 1)) {
    const std::size_t length = std::string_view(text).substr(at, 100).find_first_of(">\n");
    if (length == std::string::npos || text[at + length] != '>') continue;
    std::string name = text.substr(at + 1, length - 1);
    std::transform(name.begin(), name.end(), name.begin(),
                   [](unsigned char c) { return std::tolower(c); });
    const bool closes = name.starts_with('/');
    if (closes) name.erase(0, 1);
    if (!closes && name.starts_with("font "))
      name.resize(4);
    else if (!closes && name == "font")
      continue;
    if (name != "i" && name != "b" && name != "u" && name != "font") continue;
    if (closes && open[name] == 0) continue;
    if (std::string_view(text).substr(at + 1, length).find('<') != std::string_view::npos) continue;
    open[name] += closes ? -1 : 1;
    text.replace(at, length + 1, 1, kRemoved);
  }
  replaceAll(text, std::string_view("\0", 1), kReplacement);
  return text;
}

void checkFormat(const WriterOptions& options, const std::vector<Subtitle>& subtitles,
                 std::size_t size) {
  std::string out;
  const auto writer = makeWriter(options);
  {
    const ombe_fuzz::CostLimit limit(size, {0.15, 40, 110});
    writer->begin(out);
    for (const Subtitle& subtitle : subtitles) writer->append(subtitle, out);
    writer->end(out);
  }
  const bool isSrt = options.format == "srt", isJson = options.format == "jsonl";
  const std::vector<std::string> remarks = writer->remarks();
  const bool lacksHeader =
      !remarks.empty() && remarks[0].ends_with("states a frame rate and is left out");
  std::vector<Cue> expected;
  for (const Subtitle& subtitle : subtitles) {
    const std::uint32_t end = subtitle.timestamp + subtitle.duration;
    const std::string text(subtitle.text);
    if (isJson) {
      expected.push_back({subtitle.timestamp, end, wellFormed(text)});
    } else if (lacksHeader && &subtitle == subtitles.data()) {
      require(subtitle.duration == 0 && text.find_first_not_of("0123456789.,/\\") == text.npos,
              "only a frame rate is taken for one");
    } else if (isSrt && end >= subtitle.timestamp) {
      expected.push_back({subtitle.timestamp, end, withoutOrder(srtText(shownLines(text)))});
    } else if (!isSrt && end > subtitle.timestamp) {
      expected.push_back({subtitle.timestamp, end, wellFormed(vttText(shownLines(text)))});
    }
  }
  std::vector<Cue> cues = isJson  ? ombe_fuzz::readJsonl(out)
                          : isSrt ? ombe_fuzz::readSrt(out)
                                  : ombe_fuzz::readVtt(out, options.vttStyle);
  for (Cue& cue : cues) cue.text = isSrt ? withoutOrder(cue.text) : wellFormed(cue.text);
  require(cues == expected, "the same cues");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  const unsigned choices = input.number();
  const auto offset = input.number<std::uint32_t>();
  MediaBufferAllocator allocator;
  FrameRate stated;
  MicroDVDParser parser(allocator, {choices & 4U ? 25U : 0U, 1}, stated.numerator,
                        stated.denominator);
  const ExactText file(input.rest);
  parser.parse(file.block.get());
  std::vector<Subtitle> subtitles;
  std::deque<std::string> texts;
  for (MediaChunk* entry : parser.entries().list()) {
    const ChunkAccess access(*entry);
    texts.emplace_back(reinterpret_cast<const char*>(access.bytes()), entry->bufferSize());
    // What no line of a file holds, but another plug-in may deliver.
    std::replace(texts.back().begin(), texts.back().end(), '\1', '\0');
    std::replace(texts.back().begin(), texts.back().end(), '\2', '\r');
    subtitles.push_back({entry->timestamp + offset, entry->duration, texts.back()});
  }
  const ColorOrder order = choices & 1U ? ColorOrder::kBgr : ColorOrder::kRgb;
  for (const std::string& format : writerNames()) {
    checkFormat({format, (choices & 2U) != 0, order}, subtitles, size);
  }
  return 0;
}
