#include "host/play/tuning.h"

#include <fmt/core.h>

#include <algorithm>
#include <cmath>
#include <iterator>

#include "host/session/sync.h"

namespace Ombe {

Tuning::Tuning(HostController& settings, const std::vector<std::string>& likely, const OwnRate& own)
    : settings_(settings),
      ownRate_(own.perSecond),
      // A zero part means the file's own rate, and lets the plug-in say what that is.
      rates_{{own.name, {0, 1}}},
      codePages_(likely) {
  std::transform(std::begin(kUsualRates), std::end(kUsualRates), std::back_inserter(rates_), named);
  for (const char* usual : {"windows-1250", "windows-1251", "windows-1252", "ISO-8859-2", "IBM852",
                            "KOI8-R", "IBM866", "UTF-8"}) {
    if (std::find(likely.begin(), likely.end(), usual) == likely.end()) {
      codePages_.emplace_back(usual);
    }
  }
  findRate();
  findCodePage();
}

void Tuning::findRate() {
  const Ratio set = settings_.frameRate().value_or(Ratio{0, 1});
  if (set.numerator == 0 || set.denominator == 0) return;
  constexpr double kTolerance = 0.00005;  // 23.976 is 24000/1001
  const auto found = std::find_if(rates_.begin(), rates_.end(), [set](const Rate& rate) {
    return std::abs(perSecond(rate.ratio) - perSecond(set)) < kTolerance;
  });
  rate_ = static_cast<std::size_t>(found - rates_.begin());
  if (found == rates_.end()) rates_.push_back(named(set));
  rates_[rate_].ratio = set;
}

Tuning::Rate Tuning::named(Ratio ratio) {
  return {fmt::format("{:.6g} fps", perSecond(ratio)), ratio};
}

void Tuning::chooseFrameRate(Ratio rate) {
  const auto same = std::ranges::find(rates_, rate, &Rate::ratio);
  rate_ = static_cast<std::size_t>(same - rates_.begin());
  if (same == rates_.end() && chosen_ == 0) {
    chosen_ = rate_;
    rates_.push_back(named(rate));
  } else if (same == rates_.end()) {
    rate_ = chosen_;
    rates_[chosen_] = named(rate);
  }
  settings_.setFrameRate(rates_[rate_].ratio);
}

double Tuning::framesPerSecond() const {
  const Ratio chosen = rates_[rate_].ratio;
  return ownRate_ == 0 || chosen.numerator == 0 ? ownRate_ : perSecond(chosen);
}

void Tuning::findCodePage() {
  const std::string name = settings_.codePage();
  const auto found = std::find(codePages_.begin(), codePages_.end(), name);
  codePage_ = static_cast<std::size_t>(found - codePages_.begin());
  if (found == codePages_.end()) codePages_.push_back(name);
}

void Tuning::stepFrameRate(int step) {
  rate_ = (rate_ + rates_.size() + static_cast<std::size_t>(step)) % rates_.size();
  settings_.setFrameRate(rates_[rate_].ratio);
}

bool Tuning::stepCodePage() {
  if (isAutodetected()) return false;
  codePage_ = nextCodePage();
  settings_.setCodePage(codePages_[codePage_]);
  return true;
}

std::string Tuning::codePageName() const {
  const std::string& name = codePages_[codePage_];
  if (name.empty()) return "no code page";
  return isAutodetected() ? name + " (signature)" : name;
}

}  // namespace Ombe
