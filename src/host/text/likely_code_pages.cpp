// Each code page decodes the text, and each language that uses it says what the result costs.
#include "host/text/likely_code_pages.h"

#include <algorithm>
#include <limits>
#include <unordered_map>
#include <utility>

#include "host/text/code_page.h"
#include "host/text/language_fit.h"
#include "host/text/languages.h"
#include "host/text/utf8_scan.h"

namespace Ombe {
namespace {

constexpr std::size_t kCodePageSample = std::size_t{1} << 14;  // more bytes sharpen no guess
constexpr std::size_t kSuggestions = 3;
constexpr double kMuchDearer = 3;  // a character: such a suggestion is none

/// Whole lines, since half a character would speak against its code page.
std::string_view sampleOf(std::string_view text) {
  if (text.size() <= kCodePageSample) return text;
  const std::size_t lines = text.rfind('\n', kCodePageSample - 1) + 1;
  return text.substr(0, lines != 0 ? lines : kCodePageSample);
}

template <typename Take>
void forEachWord(std::string_view text, const Take& take) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(' '), text.size());
    if (end != 0) take(std::string(text.substr(0, end)));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

/// How often which words stand in the text that are spelled in ASCII letters alone, in small ones.
std::unordered_map<std::string, std::size_t> asciiWords(std::string_view text) {
  std::unordered_map<std::string, std::size_t> words;
  std::string word;
  bool isForeign = false;
  const auto end = [&] {
    if (!word.empty() && !isForeign) ++words[word];
    word.clear();
    isForeign = false;
  };
  for (const char c : text) {
    const char small = static_cast<char>(c | 0x20);
    if (small >= 'a' && small <= 'z') {
      word += small;
    } else if (static_cast<unsigned char>(c) >= 0x80) {
      isForeign = true;
    } else {
      end();
    }
  }
  end();
  return words;
}

struct Candidate {
  std::string codePage;
  std::u16string text;
  ForeignCharacters characters;
  double cost = std::numeric_limits<double>::max();  // in the language that it fits best

  Candidate(std::string name, std::u16string decoded, CharacterTable& table)
      : codePage(std::move(name)), text(std::move(decoded)), characters(text, table) {}

  [[nodiscard]] double costOfOne() const {
    return cost / static_cast<double>(std::max<std::size_t>(characters.total, 1));
  }
};

/// The candidate of that name among all, made if need be.
Candidate& candidateFor(const std::string& codePage, std::string_view text,
                        std::vector<Candidate>& all, CharacterTable& table) {
  const auto found = std::ranges::find(all, codePage, &Candidate::codePage);
  if (found != all.end()) return *found;
  CodePageReader reader(codePage, CodePageReader::Unreadable::kReplace);
  return all.emplace_back(codePage, reader.units(text), table);
}

std::vector<Candidate> candidatesFor(std::string_view text) {
  std::vector<Candidate> all;
  CharacterTable table(std::size_t{std::numeric_limits<char16_t>::max()} + 1);
  const auto words = asciiWords(text);
  for (const Language& language : languages()) {
    double saved = 0;
    forEachWord(language.words, [&](const std::string& word) {
      const auto found = words.find(word);
      if (found != words.end()) saved += kFrequentWord * static_cast<double>(found->second);
    });
    forEachWord(language.codePages, [&](const std::string& codePage) {
      Candidate& candidate = candidateFor(codePage, text, all, table);
      candidate.cost = std::min(candidate.cost, costIn(language, candidate.characters) - saved);
    });
  }
  return all;
}

}  // namespace

std::vector<std::string> likelyCodePages(std::string_view text) {
  std::vector<Candidate> all = candidatesFor(sampleOf(text));
  std::ranges::stable_sort(all, {}, &Candidate::cost);
  const double dearest = std::min(kIncredibleCost, all.front().costOfOne() + kMuchDearer);
  std::vector<const Candidate*> likely;
  std::vector<std::string> names;
  for (const Candidate& candidate : all) {
    if (likely.size() == kSuggestions || candidate.costOfOne() > dearest) break;
    if (std::ranges::count(likely, candidate.text, &Candidate::text) != 0) continue;
    likely.push_back(&candidate);
    names.push_back(candidate.codePage);
  }
  return names;
}

bool GarbledTexts::take(std::string_view text) {
  if (isUtf8(text)) return false;
  ++count_;
  if (sample_.size() < kCodePageSample) sample_.append(text, 0, kCodePageSample).append("\n");
  return true;
}

std::vector<std::string> GarbledTexts::likelyCodePages() const {
  return count_ == 0 ? std::vector<std::string>() : Ombe::likelyCodePages(sample_);
}

}  // namespace Ombe
