#include "host/io/messages.h"

#include <unistd.h>

#include <string>
#include <utility>

#include "host/text/visible_text.h"
#include "ombe_core/logger.h"

namespace Ombe {
namespace {

/// In one call, so that lines of several threads do not mix. Messages name files and log records
/// quote them, so a terminal gets them made visible. What standard error does not take is lost:
/// there is nowhere to report it.
void writeLine(std::string line) {
  if (::isatty(STDERR_FILENO) != 0) line = visibleText(line);
  if (::write(STDERR_FILENO, line.data(), line.size()) < 0) return;
}

void writeRecord(const LogRecord& record) {
  std::string line;
  line.append(record.channel).append(" ").append(record.function);
  line.append(":").append(std::to_string(record.line)).append(" ").append(record.text);
  while (line.ends_with('\n')) line.pop_back();
  line += '\n';
  writeLine(std::move(line));
}

}  // namespace

void reportError(std::string_view message) {
  std::string line("ombe: ");
  line.append(message).append("\n");
  writeLine(std::move(line));
}

void logToStandardError() { Logger::instance().setSink(writeRecord); }

}  // namespace Ombe
