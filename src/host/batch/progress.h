// How far a batch is.
#pragma once

#include <cstddef>
#include <string>

namespace Ombe {

/// A line on standard error, if that is a terminal and there are several items, which counts those
/// done and names the last. One thread at a time.
class Progress {
 public:
  explicit Progress(std::size_t total);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress() { hide(); }

  void show(const std::string& file) noexcept;
  /// Before something else is written to a terminal.
  void hide();

 private:
  const bool isShown_;
  const std::size_t total_;
  std::size_t done_ = 0;
};

}  // namespace Ombe
