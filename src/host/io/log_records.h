// What plug-ins log. The process has one sink for it, which is set here and nowhere else.
#pragma once

#include <string>

namespace Ombe {

struct LogRecord;

/// Every record goes to `show` as well, on the thread that logs. Any thread.
void showLogRecords(void (*show)(const LogRecord& record));

/// While it lives, keeps what this thread logs of files that could not be read; none of the
/// thread's records is shown meanwhile. One at a time for each thread. Throws std::bad_alloc.
class FailedReads {
 public:
  FailedReads();
  FailedReads(const FailedReads&) = delete;
  FailedReads& operator=(const FailedReads&) = delete;
  ~FailedReads();

  /// The last one in the plug-in's words, without a line feed; empty when there was none.
  [[nodiscard]] const std::string& last() const { return last_; }

 private:
  std::string last_;
};

}  // namespace Ombe
