#include "host/export/export_batch.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <exception>
#include <filesystem>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>

#include "host/export/export_file.h"
#include "host/export/export_options.h"
#include "host/io/failure.h"
#include "host/io/messages.h"
#include "host/text/visible_text.h"

namespace Ombe {
namespace {

class Batch {
 public:
  Batch(const std::vector<ExportItem>& items, const ExportOptions& options)
      : items_(items), options_(options), showsProgress_(::isatty(STDERR_FILENO) != 0) {}

  ExitCode run() {
    std::size_t jobs = options_.jobs != 0 ? options_.jobs : std::thread::hardware_concurrency();
    jobs = std::clamp<std::size_t>(jobs, 1, std::max<std::size_t>(items_.size(), 1));
    {
      std::vector<std::jthread> threads;
      try {
        while (threads.size() + 1 < jobs) threads.emplace_back([this] { work(); });
      } catch (const std::exception&) {
        // Those there are, at least this one, do all the work.
      }
      work();
    }
    if (showsProgress_) write("\r\x1B[K");
    return report();
  }

 private:
  void work() {
    for (std::size_t i = next_++; i < items_.size(); i = next_++) exportItem(items_[i]);
  }

  void exportItem(const ExportItem& item) {
    try {
      if (!item.trouble.empty()) throw Failure(item.input, Step::kRead, item.trouble);
      const std::filesystem::path folder = std::filesystem::path(item.output).parent_path();
      std::error_code error;  // what stands in the way is told when the file cannot be written
      if (!folder.empty()) std::filesystem::create_directories(folder, error);
      const std::vector<std::string> remarks = exportFile(item.input, item.output, options_);
      const std::lock_guard lock(mutex_);
      ++written_;
      remarks_.insert(remarks_.end(), remarks.begin(), remarks.end());
    } catch (const Failure& failure) {
      // A folder of films holds other texts as well.
      const bool isOther =
          item.isFound && item.input.ends_with(".txt") && failure.step() == Step::kProbe;
      const std::lock_guard lock(mutex_);
      if (isOther) {
        ++skipped_;
      } else {
        failures_.push_back(messageOf(failure));
      }
      if (exitCodeOf(failure) == ExitCode::kNoPlugin) code_ = ExitCode::kNoPlugin;
    } catch (const std::exception& error) {
      const std::lock_guard lock(mutex_);
      failures_.push_back(item.input + ": " + error.what());
    }
    showProgress(item.input);
  }

  void showProgress(const std::string& file) {
    const std::lock_guard lock(mutex_);
    ++done_;
    if (!showsProgress_) return;
    write("\r\x1B[K[" + std::to_string(done_) + "/" + std::to_string(items_.size()) + "] " +
          visibleLine(std::filesystem::path(file).filename().string()));
  }

  static void write(const std::string& text) {
    if (::write(STDERR_FILENO, text.data(), text.size()) < 0) return;  // nowhere to report it
  }

  ExitCode report() {
    std::string summary = std::to_string(written_) + " of " + std::to_string(items_.size()) +
                          " files written, " + std::to_string(failures_.size()) + " failed";
    if (skipped_ != 0) summary += ", " + std::to_string(skipped_) + " texts are no subtitles";
    reportError(summary);
    for (auto* lines : {&remarks_, &failures_}) {
      std::sort(lines->begin(), lines->end());
      for (const std::string& line : *lines) reportError(line);
    }
    if (code_ == ExitCode::kDone && !failures_.empty()) code_ = ExitCode::kRefused;
    return code_;
  }

  const std::vector<ExportItem>& items_;
  const ExportOptions& options_;
  const bool showsProgress_;
  std::atomic<std::size_t> next_{0};
  std::mutex mutex_;  // guards what follows
  std::size_t done_ = 0;
  std::size_t written_ = 0;
  std::size_t skipped_ = 0;
  std::vector<std::string> remarks_;
  std::vector<std::string> failures_;
  ExitCode code_ = ExitCode::kDone;
};

}  // namespace

ExitCode exportBatch(const std::vector<ExportItem>& items, const ExportOptions& options) {
  return Batch(items, options).run();
}

}  // namespace Ombe
