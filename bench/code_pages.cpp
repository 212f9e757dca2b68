// Measures how often the code page of a text is guessed right: code_pages TEXTS [TRIALS]
//
// Texts of 3, 10 and 300 lines are made of the sentences and words in TEXTS, put into each code
// page of their language, and guessed by ICU, by libuchardet and by ombe. A guess is right when it
// decodes the text to what it was. Texts that hold ASCII alone leave nothing to guess and are made
// again. Prints a table in percent.
#include <uchardet/uchardet.h>
#include <unicode/ucnv.h>
#include <unicode/ucsdet.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iterator>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/text/code_page.h"
#include "host/text/icu_function.h"
#include "host/text/likely_code_pages.h"
#include "host/text/utf8_scan.h"

namespace {

struct Language {
  std::string name;
  std::vector<std::string> codePages;
  std::vector<std::string> sentences = {};
  std::vector<std::string> words = {};
};

std::vector<std::string> wordsOf(const std::string& text) {
  std::istringstream in(text);
  return {std::istream_iterator<std::string>(in), {}};
}

std::vector<Language> readLanguages(const char* path) {
  std::ifstream in(path);
  std::vector<Language> languages;
  for (std::string line; std::getline(in, line);) {
    if (line.empty() || line.front() == '#') continue;
    if (line.starts_with("= ")) {
      const std::size_t colon = line.find(':');
      languages.push_back({line.substr(2, colon - 2), wordsOf(line.substr(colon + 1))});
      continue;
    }
    for (std::string& word : wordsOf(line)) languages.back().words.push_back(std::move(word));
    languages.back().sentences.push_back(std::move(line));
  }
  if (languages.empty()) throw std::runtime_error("no texts");
  return languages;
}

using Random = std::minstd_rand;  // the same in every run

const std::string& anyOf(const std::vector<std::string>& from, Random& random) {
  return from[random() % from.size()];
}

/// Half of the lines are sentences, the others words of several.
std::string makeText(const Language& language, int lines, Random& random) {
  constexpr int kFrames = 60;
  std::string text;
  for (int frame = 0; frame < lines * kFrames; frame += kFrames) {
    text += "{" + std::to_string(frame) + "}{" + std::to_string(frame + kFrames - 10) + "}";
    if (random() % 2 == 0) {
      text += anyOf(language.sentences, random);
    } else {
      for (auto count = random() % 5 + 2; count > 0; --count) {
        text += anyOf(language.words, random) + (count == 1 ? "" : " ");
      }
    }
    text += "\n";
  }
  return text;
}

std::string encoded(const std::string& text, const std::string& codePage) {
  UErrorCode status = U_ZERO_ERROR;
  std::string bytes(text.size() * 2, '\0');
  const std::int32_t size = OMBE_ICU("uc", ucnv_convert)(
      codePage.c_str(), "UTF-8", bytes.data(), static_cast<std::int32_t>(bytes.size()), text.data(),
      static_cast<std::int32_t>(text.size()), &status);
  if (U_FAILURE(status)) throw std::runtime_error("nothing can be put into " + codePage);
  bytes.resize(static_cast<std::size_t>(size));
  return bytes;
}

std::string guessByIcu(const std::string& bytes) {
  UErrorCode status = U_ZERO_ERROR;
  UCharsetDetector* detector = OMBE_ICU("i18n", ucsdet_open)(&status);
  const auto size = static_cast<std::int32_t>(bytes.size());
  OMBE_ICU("i18n", ucsdet_setText)(detector, bytes.data(), size, &status);
  const UCharsetMatch* match = OMBE_ICU("i18n", ucsdet_detect)(detector, &status);
  std::string name;
  if (match != nullptr) name = OMBE_ICU("i18n", ucsdet_getName)(match, &status);
  OMBE_ICU("i18n", ucsdet_close)(detector);
  return name;
}

std::string guessByUchardet(const std::string& bytes) {
  const uchardet_t detector = uchardet_new();
  uchardet_handle_data(detector, bytes.data(), bytes.size());
  uchardet_data_end(detector);
  std::string name = uchardet_get_charset(detector);
  uchardet_delete(detector);
  if (name == "UHC") return "windows-949";           // as ICU calls it
  if (name == "ISO-8859-16") return "windows-1250";  // has Romanian's letters in the same places
  return name;
}

std::string guessByOmbe(const std::string& bytes) {
  const std::vector<std::string> likely = Ombe::likelyCodePages(bytes);
  return likely.empty() ? std::string() : likely.front();
}

bool isRight(const std::string& guess, const std::string& bytes, const std::string& text) {
  if (guess.empty() || !Ombe::isKnownCodePage(guess)) return false;
  return Ombe::CodePageReader(guess).read(bytes) == text;
}

constexpr std::array kLines = {3, 10, 300};
constexpr std::array kDetectors = {guessByIcu, guessByUchardet, guessByOmbe};

/// How often each detector was right, for each number of lines.
using Score = std::array<std::array<double, kDetectors.size()>, kLines.size()>;

Score measure(const Language& language, const std::string& codePage, int trials) {
  Score score{};
  for (std::size_t i = 0; i < kLines.size(); ++i) {
    Random random(42);
    for (int trial = 0; trial < trials;) {
      const std::string text = makeText(language, kLines[i], random);
      const std::string bytes = encoded(text, codePage);
      if (Ombe::isUtf8(bytes)) continue;
      ++trial;
      for (std::size_t k = 0; k < kDetectors.size(); ++k) {
        if (isRight(kDetectors[k](bytes), bytes, text)) ++score[i][k];
      }
    }
  }
  return score;
}

void printRow(const std::string& title, const Score& score, double most, int decimals) {
  std::printf("| %s |", title.c_str());
  for (const auto& ofLines : score) {
    for (const double right : ofLines) std::printf(" %.*f |", decimals, 100 * right / most);
  }
  std::printf("\n");
}

void run(const char* path, int trials) {
  std::printf("| language, code page |");
  for (const int lines : kLines) {
    for (const char* name : {"ICU", "libuchardet", "ombe"}) std::printf(" %s, %d |", name, lines);
  }
  std::printf("\n|---|---:|---:|---:|---:|---:|---:|---:|---:|---:|\n");
  Score sum{};
  int rows = 0;
  for (const Language& language : readLanguages(path)) {
    for (const std::string& codePage : language.codePages) {
      const Score score = measure(language, codePage, trials);
      printRow(language.name + ", " + codePage, score, trials, 0);
      for (std::size_t i = 0; i < score.size(); ++i) {
        for (std::size_t k = 0; k < kDetectors.size(); ++k) sum[i][k] += score[i][k];
      }
      ++rows;
    }
  }
  printRow("**all**", sum, trials * rows, 1);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const int trials = argc > 2 ? std::atoi(argv[2]) : 200;
    if (argc < 2 || trials < 1) throw std::runtime_error("usage: code_pages TEXTS [TRIALS]");
    run(argv[1], trials);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
  return 0;
}
