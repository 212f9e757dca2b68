#include "host/cli/film_options.h"

#include <algorithm>

#include "host/io/messages.h"

namespace Ombe {
namespace {

/// What is wrong with what was asked for; empty for nothing.
std::string objectionTo(const FilmTimes& times, const SessionOptions& session) {
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

}  // namespace

Command withFilmTimes(Command command, FilmTimes& times, const SessionOptions& session) {
  const auto place =
      std::find_if(command.options.begin(), command.options.end(),
                   [](const Option& option) { return option.names.back() == "--frame-rate"; });
  command.options.insert(place + 1, syncOption(times));
  command.run = [run = std::move(command.run), &times, &session] {
    const std::string objection = objectionTo(times, session);
    if (objection.empty()) return run();
    reportError(objection, "Run with --help for more information.");
    return ExitCode::kWrongUsage;
  };
  return command;
}

}  // namespace Ombe
