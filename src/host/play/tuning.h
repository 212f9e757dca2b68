// Settings that are changed while watching.
#pragma once

#include <string>
#include <vector>

#include "host/session/host_controller.h"

namespace Ombe {

/// Steps through the usual frame rates and code pages, and through what was set at the beginning.
/// Every step changes the setting, of which the controller, which must outlive this, tells the
/// plug-in. One thread at a time.
class Tuning {
 public:
  /// Code pages that are `likely` come first. `fileRate` names the rate that is used when none is
  /// chosen.
  Tuning(HostController& settings, const std::vector<std::string>& likely,
         const std::string& fileRate);

  void stepFrameRate(int step);  ///< 1 or -1
  /// False when the text does not depend on it, since a signature in the file has named its own.
  bool stepCodePage();

  [[nodiscard]] const std::string& frameRateName() const { return rates_[rate_].name; }
  [[nodiscard]] std::string codePageName() const;
  [[nodiscard]] const std::string& nextCodePageName() const { return codePages_[nextCodePage()]; }
  [[nodiscard]] bool isAutodetected() const;

 private:
  struct Rate {
    std::string name;
    Ratio ratio;
  };

  [[nodiscard]] std::size_t nextCodePage() const { return (codePage_ + 1) % codePages_.size(); }
  void findRate();
  void findCodePage();

  HostController& settings_;
  std::vector<Rate> rates_;
  std::size_t rate_ = 0;
  std::vector<std::string> codePages_;
  std::size_t codePage_ = 0;
};

}  // namespace Ombe
