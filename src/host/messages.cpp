#include "host/messages.h"

#include <unistd.h>

#include <string>

#include "ombe_core/logger.h"

namespace Ombe {
namespace {

/// In one call, so that lines of several threads do not mix. What standard error does not take is
/// lost: there is nowhere to report it.
void writeLine(const std::string& line) {
  if (::write(STDERR_FILENO, line.data(), line.size()) < 0) return;
}

void writeRecord(const LogRecord& record) {
  std::string line;
  line.append(record.channel).append(" ").append(record.function);
  line.append(":").append(std::to_string(record.line)).append(" ").append(record.text);
  while (line.ends_with('\n')) line.pop_back();
  line += '\n';
  writeLine(line);
}

}  // namespace

void reportError(std::string_view message) {
  std::string line("ombe: ");
  line.append(message).append("\n");
  writeLine(line);
}

void logToStandardError() { Logger::instance().setSink(writeRecord); }

}  // namespace Ombe
