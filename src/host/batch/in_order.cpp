#include "host/batch/in_order.h"

#include <unistd.h>

#include <algorithm>
#include <condition_variable>
#include <exception>
#include <filesystem>
#include <mutex>
#include <thread>
#include <vector>

#include "host/io/descriptor_io.h"
#include "host/text/visible_text.h"

namespace Ombe {
namespace {

constexpr char kClear[] = "\r\x1B[K";

/// How far the work is. One thread at a time.
class Progress {
 public:
  explicit Progress(std::size_t total)
      : total_(total), isShown_(total > 1 && ::isatty(STDERR_FILENO) != 0) {}
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress() { hide(); }

  void show(std::size_t number, const ItemName& name) const noexcept {
    if (!isShown_) return;
    try {
      const std::string count = std::to_string(number + 1) + "/" + std::to_string(total_);
      const std::string file = std::filesystem::path(name(number)).filename().string();
      static_cast<void>(
          writeBytes(STDERR_FILENO, kClear + ("[" + count + "] ") + visibleLine(file)));
    } catch (const std::exception&) {
      // Memory is short: the next one will show.
    }
  }
  /// Before something else is written to a terminal.
  void hide() const {
    if (isShown_) static_cast<void>(writeBytes(STDERR_FILENO, kClear));
  }

 private:
  const std::size_t total_;
  const bool isShown_;
};

class Run {
 public:
  Run(std::size_t count, std::size_t ahead, const NumberedWork& work, const NumberedWork& take)
      : count_(count), done_(ahead, false), work_(work), take_(take) {}

  void operator()() noexcept {
    std::unique_lock lock(mutex_);
    while (waitForNumber(lock)) {
      const std::size_t number = next_++;
      call(lock, work_, number);
      done_[number % done_.size()] = true;
      takeAll(lock);
    }
  }

  void rethrow() const {
    if (failure_) std::rethrow_exception(failure_);
  }

 private:
  /// False when there is nothing left to begin.
  bool waitForNumber(std::unique_lock<std::mutex>& lock) {
    moved_.wait(lock,
                [this] { return failure_ || next_ == count_ || next_ < taken_ + done_.size(); });
    return !failure_ && next_ != count_;
  }

  void takeAll(std::unique_lock<std::mutex>& lock) {
    if (isTaking_) return;
    isTaking_ = true;
    while (!failure_ && done_[taken_ % done_.size()]) {
      done_[taken_ % done_.size()] = false;
      call(lock, take_, taken_);
      ++taken_;
      moved_.notify_all();
    }
    isTaking_ = false;
  }

  void call(std::unique_lock<std::mutex>& lock, const NumberedWork& what, std::size_t number) {
    std::exception_ptr failure;
    lock.unlock();
    try {
      what(number);
    } catch (...) {
      failure = std::current_exception();
    }
    lock.lock();
    if (failure && !failure_) failure_ = failure;
    if (failure) moved_.notify_all();
  }

  const std::size_t count_;
  std::mutex mutex_;
  std::condition_variable moved_;
  std::size_t next_ = 0;  // guarded, as are all below
  std::size_t taken_ = 0;
  std::vector<bool> done_;  // of a number, by its remainder
  bool isTaking_ = false;
  std::exception_ptr failure_;
  const NumberedWork& work_;
  const NumberedWork& take_;
};

}  // namespace

void runInOrder(std::size_t count, std::size_t jobs, const NumberedWork& work,
                const NumberedWork& take, const ItemName& name) {
  const Progress progress(count);
  const NumberedWork takeAndShow = [&](std::size_t number) {
    if (take) {
      progress.hide();
      take(number);
    }
    progress.show(number, name);
  };
  if (jobs == 0) jobs = std::thread::hardware_concurrency();
  jobs = std::clamp<std::size_t>(jobs, 1, std::max<std::size_t>(count, 1));
  Run run(count, 2 * jobs, work, takeAndShow);
  {
    std::vector<std::jthread> threads;
    try {
      while (threads.size() + 1 < jobs) threads.emplace_back([&run] { run(); });
    } catch (const std::exception&) {
      // Those there are, at least this one, do all the work.
    }
    run();
  }
  run.rethrow();
}

}  // namespace Ombe
