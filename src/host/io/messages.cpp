#include "host/io/messages.h"

#include <unistd.h>

#include <string>

#include "host/io/log_records.h"
#include "host/text/visible_text.h"
#include "ombe_core/logger.h"

namespace Ombe {
namespace {

/// In one call, so that lines of several threads do not mix. What standard error does not take is
/// lost: there is nowhere to report it.
void writeLine(std::string_view line) {
  if (::write(STDERR_FILENO, line.data(), line.size()) < 0) return;
}

void writeRecord(const LogRecord& record) {
  std::string line;
  line.append(record.channel).append(" ").append(record.function);
  line.append(":").append(std::to_string(record.line)).append(" ").append(record.text);
  while (line.ends_with('\n')) line.pop_back();
  writeLine(visibleLine(line) + "\n");
}

}  // namespace

void reportError(std::string_view message, std::string_view advice) {
  std::string line = "ombe: " + visibleLine(message) + "\n";
  if (!advice.empty()) line.append(advice).append("\n");
  writeLine(line);
}

void logToStandardError() { showLogRecords(writeRecord); }

}  // namespace Ombe
