#include "host/cli/film_options.h"

#include <fmt/core.h>

#include <algorithm>

#include "host/io/failure.h"
#include "host/io/film_rate.h"
#include "host/io/messages.h"

namespace Ombe {
namespace {

/// What is wrong with what was asked for; empty for nothing.
std::string objectionTo(const FilmTimes& times, const std::string& film,
                        const SessionOptions& session) {
  if (!film.empty() && session.frameRate) return "--fit and --frame-rate exclude each other";
  if (!film.empty() && times.points.size() == 2)
    return "two --sync say all of the rate: leave --fit out, or one --sync";
  if (times.points.empty()) return {};
  if (session.offsetMs != 0) return "--sync says all of the offset: leave --offset out";
  if (times.points.size() == 2 && session.frameRate)
    return "two --sync say all of the rate: leave --frame-rate out, or one --sync";
  const std::string objection = objectionTo(times.points);
  return objection.empty() ? "" : "the points of --sync " + objection;
}

Option syncOption(FilmTimes& times) {
  const auto add = [&times](const std::string& text) {
    const auto point = parseSyncPoint(text);
    if (point) times.points.push_back(*point);
    return point.has_value();
  };
  return {.names = {"--sync"},
          .value = "FROM=TO",
          .purpose = "What starts at FROM is to start at TO; a second one sets the rate as well",
          .more =
              "FROM is the time without this option. Times are such as 90, 1:30 or "
              "1:02:03.5. Two leave nothing for --frame-rate to say, and any for an offset.",
          .refusal = "is no pair of times such as 0:01:00=0:01:02.5",
          .isRepeated = true,
          .set = add};
}

Option fitOption(std::string& film) {
  return {.names = {"--fit"},
          .value = "FILM",
          .purpose = "Take the frame rate of this film, as ffprobe or mediainfo tells it",
          .more = "A header that states another counts for nothing and is not shown.",
          .takesFile = true,
          .set = into(film)};
}

/// Says what was found.
Ratio askedRate(const std::string& film) {
  const FilmRate found = filmRate(film);
  reportError(fmt::format("{}: {}/{} = {:.6g} frames a second{}, as {} has it", film,
                          found.rate.numerator, found.rate.denominator, perSecond(found.rate),
                          found.isAverage ? " on average" : "", found.program));
  return found.rate;
}

}  // namespace

Command withFilmTimes(Command command, FilmTimes& times, const SessionOptions& session) {
  const auto place = std::ranges::find_if(
      command.options, [](const Option& option) { return option.names.back() == "--frame-rate"; });
  const auto film = std::make_shared<std::string>();
  command.options.insert(place + 1, {fitOption(*film), syncOption(times)});
  command.run = [run = std::move(command.run), film, &times, &session] {
    const std::string objection = objectionTo(times, *film, session);
    if (!objection.empty()) {
      reportError(objection, "Run with --help for more information.");
      return ExitCode::kWrongUsage;
    }
    try {
      if (!film->empty()) times.rate = askedRate(*film);
    } catch (const Failure& failure) {
      reportError(failure.what());
      return ExitCode::kWrongUsage;
    }
    return run();
  };
  return command;
}

}  // namespace Ombe
