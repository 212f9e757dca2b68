#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <filesystem>
#include <mutex>
#include <system_error>
#include <thread>

#include "host/export/export.h"
#include "host/export/export_steps.h"
#include "host/io/failure.h"
#include "host/io/messages.h"
#include "host/text/visible_text.h"

namespace Ombe {
namespace {

using Kind = NamedSource::Kind;
using Result = ExportItem::Result;

void writeError(std::string_view text) {
  if (::write(STDERR_FILENO, text.data(), text.size()) < 0) return;  // nowhere to report it
}

/// A line that counts the items done, on a terminal.
class Progress {
 public:
  explicit Progress(std::size_t total) : total_(total) {}
  ~Progress() {
    if (isShown_) writeError("\r\x1B[K");
  }

  void show(const std::string& file) {
    if (!isShown_) return;
    const std::lock_guard lock(mutex_);
    ++done_;
    writeError("\r\x1B[K[" + std::to_string(done_) + "/" + std::to_string(total_) + "] " +
               visibleLine(std::filesystem::path(file).filename().string()));
  }

 private:
  const bool isShown_ = ::isatty(STDERR_FILENO) != 0;
  const std::size_t total_;
  std::mutex mutex_;
  std::size_t done_ = 0;  // guarded
};

void write(ExportItem& item, const ExportOptions& options) {
  const std::filesystem::path folder = std::filesystem::path(item.output).parent_path();
  std::error_code error;  // what stands in the way is told when the file cannot be written
  if (!folder.empty()) std::filesystem::create_directories(folder, error);
  item.remarks = exportFile(item.source.path, item.output, options);
  item.result = Result::kWritten;
}

/// Notes the failure that is being handled, without allocating.
void noteFailure(ExportItem& item) noexcept {
  try {
    throw;
  } catch (const std::bad_alloc&) {
    // Kept by the hundred these would use up the reserve that lets them be thrown.
  } catch (const Failure& failure) {
    // A folder of films holds other texts as well.
    const bool isOther = item.source.kind == Kind::kFound && failure.step() == Step::kProbe &&
                         item.source.path.ends_with(".txt");
    if (isOther) item.result = Result::kSkipped;
    item.failure = std::current_exception();
  } catch (...) {
    item.failure = std::current_exception();
  }
}

void process(ExportItem& item, const ExportOptions& options, Progress& progress) noexcept {
  try {
    if (item.source.kind == Kind::kSkipped) item.result = Result::kSkipped;
    if (!item.output.empty()) write(item, options);
  } catch (...) {
    noteFailure(item);
  }
  try {
    progress.show(item.source.path);
  } catch (const std::bad_alloc&) {
    // The next one will show.
  }
}

std::string lineAbout(const ExportItem& item) {
  const std::string name = item.source.path == "-" ? "standard input" : item.source.path;
  std::string reason = item.source.reason;
  try {
    if (item.failure) std::rethrow_exception(item.failure);
    if (reason.empty()) reason = "out of memory";
  } catch (const Failure& failure) {
    if (item.result != Result::kSkipped) return messageOf(failure);
    reason = failure.reason();
  } catch (const std::exception& error) {
    reason = error.what();
  }
  return name + (item.result == Result::kSkipped ? ": skipped: " : ": ") + reason;
}

void reportItem(const ExportItem& item) {
  for (const std::string& remark : item.remarks) reportError(remark);
  if (item.result != Result::kWritten) reportError(lineAbout(item));
}

}  // namespace

void exportItems(std::vector<ExportItem>& items, const ExportOptions& options) {
  const Session attempt(options.session);  // without a plug-in there is one failure, not many
  std::size_t jobs = options.jobs != 0 ? options.jobs : std::thread::hardware_concurrency();
  jobs = std::clamp<std::size_t>(jobs, 1, std::max<std::size_t>(items.size(), 1));
  Progress progress(items.size());
  std::atomic<std::size_t> next{0};
  const auto work = [&]() noexcept {
    for (std::size_t i = next++; i < items.size(); i = next++) process(items[i], options, progress);
  };
  std::vector<std::jthread> threads;
  try {
    while (threads.size() + 1 < jobs) threads.emplace_back(work);
  } catch (const std::exception&) {
    // Those there are, at least this one, do all the work.
  }
  work();
}

ExitCode reportItems(const std::vector<ExportItem>& items) {
  std::array<std::size_t, 3> counts{};
  for (const ExportItem& item : items) ++counts.at(static_cast<std::size_t>(item.result));
  const auto [failed, written, skipped] = counts;
  std::array<char, 128> summary{};
  std::snprintf(summary.data(), summary.size(), "ombe: %zu of %zu files written, %zu failed",
                written, items.size(), failed);
  writeError(summary.data());
  std::snprintf(summary.data(), summary.size(), skipped == 0 ? "\n" : ", %zu skipped\n", skipped);
  writeError(summary.data());
  try {
    for (const ExportItem& item : items) reportItem(item);
  } catch (const std::bad_alloc&) {
    writeError("ombe: out of memory\n");
  }
  return failed == 0 ? ExitCode::kDone : ExitCode::kRefused;
}

}  // namespace Ombe
