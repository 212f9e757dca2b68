// Settings that are changed while watching.
#pragma once

#include <string>
#include <vector>

#include "host/session/host_controller.h"

namespace Ombe {

/// The frame rate of a file.
struct OwnRate {
  std::string name = "file's times";
  double perSecond = 0;  ///< 0 where times are no frames
};

/// Steps through the usual frame rates and code pages, and through what was set at the beginning.
/// Every step changes the setting, of which the controller, which must outlive this, tells the
/// plug-in. One thread at a time.
class Tuning {
 public:
  /// Code pages that are `likely` come first. `own` is used when no rate is chosen.
  Tuning(HostController& settings, const std::vector<std::string>& likely, const OwnRate& own);

  void stepFrameRate(int step);  ///< 1 or -1
  /// Adds the rate to those to step through, instead of one that was added before.
  void chooseFrameRate(Ratio rate);
  /// The rate in force; 0 where times are no frames.
  [[nodiscard]] double framesPerSecond() const;
  /// False when the text does not depend on it, since a signature in the file has named its own.
  bool stepCodePage();

  [[nodiscard]] const std::string& frameRateName() const { return rates_[rate_].name; }
  [[nodiscard]] std::string codePageName() const;
  [[nodiscard]] const std::string& nextCodePageName() const { return codePages_[nextCodePage()]; }
  [[nodiscard]] bool isAutodetected() const { return settings_.isAutodetected(); }

 private:
  struct Rate {
    std::string name;
    Ratio ratio;
  };

  [[nodiscard]] std::size_t nextCodePage() const { return (codePage_ + 1) % codePages_.size(); }
  static Rate named(Ratio ratio);
  void findRate();
  void findCodePage();

  HostController& settings_;
  double ownRate_;
  std::vector<Rate> rates_;
  std::size_t rate_ = 0;
  std::size_t chosen_ = 0;  // the one that was added last, 0 for none
  std::vector<std::string> codePages_;
  std::size_t codePage_ = 0;
};

}  // namespace Ombe
