#include "host/io/film_rate.h"

#include <cmath>
#include <filesystem>
#include <optional>
#include <string_view>

#include "host/io/failure.h"
#include "host/io/program_output.h"
#include "host/text/number_text.h"

namespace Ombe {
namespace {

/// A rate that films can have; nothing for any other text.
std::optional<Ratio> usableRate(std::string_view text) {
  constexpr std::uint32_t kPartEnd = 1U << 31;  // for a header, whose parts have a sign
  constexpr std::uint32_t kRateEnd = 1000;      // frames a second
  const auto rate = parseFrameRate(text);
  if (!rate || rate->denominator == 0 || rate->numerator < rate->denominator ||
      rate->numerator >= kPartEnd || rate->numerator / rate->denominator >= kRateEnd)
    return std::nullopt;
  return rate;
}

/// What follows `start` up to the end of its line; empty for none.
std::string_view behind(std::string_view output, std::string_view start) {
  const std::size_t at = output.find(start);
  if (at == std::string_view::npos) return {};
  output.remove_prefix(at + start.size());
  return output.substr(0, output.find_first_of("\r\n"));
}

/// By the base of its time stamps a film has the one rate, by its frames the other: alike when the
/// frames last equally long, but for rounding in the file.
std::optional<FilmRate> readFfprobe(std::string_view output) {
  constexpr double kRounding = 0.002;
  const auto base = usableRate(behind(output, "\nr_frame_rate="));
  const auto average = usableRate(behind(output, "\navg_frame_rate="));
  if (!average) return std::nullopt;
  const bool isSteady =
      base && std::abs(perSecond(*base) - perSecond(*average)) <= kRounding * perSecond(*average);
  return FilmRate{isSteady ? *base : *average, !isSteady, "ffprobe"};
}

/// "24000/1001 23.976", the fraction left out by older ones.
std::optional<FilmRate> readMediainfo(std::string_view output) {
  const std::string_view line = output.substr(0, output.find_first_of("\r\n"));
  const std::size_t blank = line.find(' ');
  if (blank == std::string_view::npos) return std::nullopt;
  auto rate = usableRate(line.substr(0, blank));
  if (!rate) rate = usableRate(line.substr(blank + 1));
  return rate ? std::optional(FilmRate{*rate, false, "mediainfo"}) : std::nullopt;
}

}  // namespace

FilmRate filmRate(const std::string& film) {
  namespace fs = std::filesystem;
  std::error_code error;
  const bool isFile = fs::is_regular_file(film, error);
  if (error) throw Failure(film, Step::kRead, "cannot be read: " + error.message());
  if (!isFile) throw Failure(film, Step::kRead, "is not a regular file");
  // An absolute path begins neither as an option nor as an address.
  const std::string path = fs::absolute(film).string();
  const auto ffprobe = outputOf({"ffprobe", "-v", "quiet", "-select_streams", "V:0",
                                 "-show_entries", "stream=r_frame_rate,avg_frame_rate", "-of",
                                 "default=noprint_wrappers=1", "-i", "file:" + path});
  if (ffprobe) {
    if (const auto rate = readFfprobe("\n" + *ffprobe)) return *rate;
  }
  const auto mediainfo = outputOf(
      {"mediainfo", "--Output=Video;%FrameRate_Num%/%FrameRate_Den% %FrameRate%\\n", path});
  if (mediainfo) {
    if (const auto rate = readMediainfo(*mediainfo)) return *rate;
  }
  if (!ffprobe && !mediainfo)
    throw Failure(film, Step::kRead, "neither ffprobe nor mediainfo is there to ask about it");
  throw Failure(film, Step::kRead,
                std::string(ffprobe ? "ffprobe" : "mediainfo") +
                    " finds no video in it whose frame rate is known");
}

}  // namespace Ombe
