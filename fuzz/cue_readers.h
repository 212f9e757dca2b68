// Strict readers of what the host writes: whatever their format does not allow ends the run.
#pragma once

#include <charconv>
#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "support.h"

namespace ombe_fuzz {

struct Cue {
  std::uint64_t start;
  std::uint64_t end;
  std::string text;  ///< lines, each ended by LF
  bool operator==(const Cue&) const = default;
};

inline std::string_view takeLine(std::string_view& rest) {
  const std::size_t end = rest.find('\n');
  require(end != std::string_view::npos, "every line is ended");
  const std::string_view line = rest.substr(0, end);
  require(line.find('\r') == std::string_view::npos, "by LF alone");
  rest.remove_prefix(end + 1);
  return line;
}

inline std::uint64_t readDigits(std::string_view digits) {
  std::uint64_t number = 0;
  const auto end = std::from_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  require(!digits.empty() && end == digits.data() + digits.size(), "digits");
  return number;
}

/// HH:MM:SS.mmm, where hours may have more digits.
inline std::uint64_t readTime(std::string_view text, char point) {
  require(text.size() >= 12, "two digits for hours at least");
  const std::size_t at = text.size() - 10;
  require(text[at] == ':' && text[at + 3] == ':' && text[at + 6] == point, "the form of a time");
  const std::uint64_t minutes = readDigits(text.substr(at + 1, 2));
  const std::uint64_t seconds = readDigits(text.substr(at + 4, 2));
  require(minutes < 60 && seconds < 60, "no more than an hour and a minute hold");
  return ((readDigits(text.substr(0, at)) * 60 + minutes) * 60 + seconds) * 1000 +
         readDigits(text.substr(at + 7));
}

/// Times and text, up to the blank line.
inline Cue readCue(std::string_view& rest, char point) {
  const std::string_view times = takeLine(rest);
  const std::size_t arrow = times.find(" --> ");
  require(arrow != std::string_view::npos, "two times");
  Cue cue{readTime(times.substr(0, arrow), point), readTime(times.substr(arrow + 5), point), {}};
  for (auto line = takeLine(rest); !line.empty(); line = takeLine(rest)) {
    require(line.find_first_not_of(" \t\v\f") != std::string_view::npos, "no line of blanks");
    require(line.find("-->") == std::string_view::npos, "no arrow in a text");
    cue.text.append(line).push_back('\n');
  }
  return cue;
}

inline std::vector<Cue> readSrt(std::string_view rest) {
  std::vector<Cue> cues;
  while (!rest.empty()) {
    require(readDigits(takeLine(rest)) == cues.size() + 1, "numbers from 1 on");
    cues.push_back(readCue(rest, ','));
  }
  return cues;
}

/// The text without markup. `classes` are those that a tag may name.
inline std::string readVttText(std::string_view text, const std::set<std::string>& classes) {
  std::map<char, int> open;
  std::string plain;
  while (!text.empty()) {
    require(text[0] != '>' && text[0] != '\0', "no bare > and no NUL");
    if (text[0] != '<' && text[0] != '&') {
      plain += text[0];
      text.remove_prefix(1);
      continue;
    }
    const std::size_t end = text.find(text[0] == '<' ? '>' : ';');
    require(end != std::string_view::npos, "every < and & has its end");
    const std::string_view mark = text.substr(0, end);
    if (text[0] == '&') {
      const char* characters = "<>&";
      constexpr std::string_view kNames[] = {"&lt", "&gt", "&amp"};
      const auto* name = std::find(std::begin(kNames), std::end(kNames), mark);
      require(name != std::end(kNames), "a known escape");
      plain += characters[name - kNames];
    } else {
      const bool closes = mark.substr(1, 1) == "/";
      const std::string name(mark.substr(closes ? 2 : 1));
      require(!name.empty() && std::string_view("ibuc").find(name[0]) != std::string_view::npos,
              "a known tag");
      require(name.size() == 1 || (!closes && classes.contains(name)), "a known class");
      open[name[0]] += closes ? -1 : 1;
      require(open[name[0]] >= 0, "no end of what was not begun");
    }
    text.remove_prefix(end + 1);
  }
  return plain;
}

inline std::vector<Cue> readVtt(std::string_view rest, bool hasStyle) {
  std::set<std::string> classes{"c.white",  "c.lime",    "c.cyan", "c.red",
                                "c.yellow", "c.magenta", "c.blue", "c.black"};
  require(takeLine(rest) == "WEBVTT" && takeLine(rest).empty(), "the head");
  if (hasStyle && rest.starts_with("STYLE\n")) {
    takeLine(rest);
    for (auto line = takeLine(rest); !line.empty(); line = takeLine(rest)) {
      const std::string digits(line.substr(std::min<std::size_t>(8, line.size()), 6));
      std::string rule = "::cue(.c";
      rule.append(digits).append(") { color: #").append(digits).append("; }");
      require(line == rule && digits.find_first_not_of("0123456789abcdef") == std::string::npos,
              "a color of its own");
      classes.insert("c.c" + digits);
    }
  }
  std::vector<Cue> cues;
  while (!rest.empty()) {
    cues.push_back(readCue(rest, '.'));
    cues.back().text = readVttText(cues.back().text, classes);
  }
  return cues;
}

inline std::vector<Cue> readJsonl(std::string_view rest) {
  std::vector<Cue> cues;
  while (!rest.empty()) {
    const auto object = nlohmann::json::parse(takeLine(rest));
    require(object.size() == 3, "three members");
    const auto start = object.at("timestamp").get<std::uint32_t>();
    cues.push_back({start, start + object.at("duration").get<std::uint32_t>(),
                    object.at("text").get<std::string>()});
  }
  return cues;
}

}  // namespace ombe_fuzz
