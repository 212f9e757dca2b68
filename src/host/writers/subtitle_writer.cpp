#include "host/writers/subtitle_writer.h"

#include <algorithm>
#include <utility>

#include "host/text/number_text.h"
#include "host/writers/formats.h"

namespace Ombe {
namespace {

struct Format {
  const char* name;
  std::unique_ptr<SubtitleWriter> (*make)(const WriterOptions&);
};

constexpr Format kFormats[] = {
    {"srt", makeSrtWriter}, {"vtt", makeVttWriter}, {"jsonl", makeJsonlWriter}};

/// A file's first line may state its frame rate instead of holding a subtitle. With a rate that was
/// chosen the plug-in delivers it.
bool isFrameRateHeader(const Subtitle& subtitle) {
  std::string rate(subtitle.text.substr(0, 100));
  std::replace(rate.begin(), rate.end(), ',', '.');
  std::replace(rate.begin(), rate.end(), '\\', '/');
  return subtitle.duration == 0 && parseFrameRate(rate).has_value();
}

}  // namespace

void SubtitleWriter::append(const Subtitle& subtitle, std::string& out) {
  const bool isFirst = std::exchange(isFirst_, false);
  if (takes_ != Takes::kAll && isFirst && isFrameRateHeader(subtitle)) {
    header_ = subtitle.text;
  } else if (!takes(subtitle)) {
    ++leftOut_;
  } else {
    write(subtitle, out);
  }
}

bool SubtitleWriter::takes(const Subtitle& subtitle) const {
  if (takes_ == Takes::kAll) return true;
  return takes_ == Takes::kEndAfterStart ? subtitle.end() > subtitle.timestamp
                                         : subtitle.end() >= subtitle.timestamp;
}

std::vector<std::string> SubtitleWriter::remarks() const {
  std::vector<std::string> result;
  if (!header_.empty()) {
    result.push_back("its first line, " + header_ + ", states a frame rate and is left out");
  }
  if (leftOut_ != 0) {
    result.push_back(std::to_string(leftOut_) +
                     (leftOut_ == 1 ? " subtitle that ends" : " subtitles that end") +
                     (takes_ == Takes::kEndAfterStart ? " no later than" : " before") +
                     (leftOut_ == 1 ? " it starts is left out" : " they start are left out"));
  }
  return result;
}

std::unique_ptr<SubtitleWriter> makeWriter(const WriterOptions& options) {
  for (const Format& known : kFormats) {
    if (known.name == options.format) return known.make(options);
  }
  return nullptr;
}

std::vector<std::string> writerNames() {
  std::vector<std::string> names;
  for (const Format& known : kFormats) names.emplace_back(known.name);
  return names;
}

}  // namespace Ombe
