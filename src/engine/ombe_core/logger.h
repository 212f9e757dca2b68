// The process-wide logger.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "ombe_core/export.h"

namespace Ombe {

/// One formatted message; the views live as long as the call of the sink.
struct LogRecord {
  const char* channel;
  const char* function;
  unsigned long line;
  const std::string& text;
};

/// Hands messages to a replaceable sink. While no sink is set nothing is formatted. Safe on any
/// thread; the sink is called on the thread that logs, without a lock of the logger, so it must be
/// safe too. A plug-in may hold its own lock while it logs: the sink neither waits for a thread
/// that is inside the plug-in nor destroys the stream that is read or sought.
class OMBE_API Logger {
 public:
  using Sink = std::function<void(const LogRecord&)>;

  static Logger& instance();

  /// printf-style. Throws what the sink throws, and std::bad_alloc.
  void log(const char* channel, const char* function, unsigned long line, const char* format,
           ...) const __attribute__((format(printf, 5, 6)));

  /// Replaces the sink; an empty one switches logging off. Calls under way may still reach the old
  /// one, which is destroyed without a lock, so it may log.
  void setSink(Sink sink);

 private:
  Logger() = default;

  mutable std::mutex mutex_;
  std::shared_ptr<const Sink> sink_;  // guarded by mutex_
  std::atomic<bool> enabled_{false};
};

}  // namespace Ombe
