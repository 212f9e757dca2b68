#include "ombe_core/logger.h"

#include <cstdarg>
#include <cstdio>

namespace Ombe {
namespace {

__attribute__((format(printf, 1, 0))) std::string formatMessage(const char* format,
                                                                std::va_list arguments) {
  std::va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, arguments);
  std::string text(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
  std::vsnprintf(text.data(), text.size() + 1, format, again);
  va_end(again);
  return text;
}

}  // namespace

Logger& Logger::instance() {
  static Logger logger;
  return logger;
}

void Logger::log(const char* channel, const char* function, unsigned long line, const char* format,
                 ...) const {
  if (!enabled_.load(std::memory_order_acquire)) return;
  std::shared_ptr<const Sink> sink;
  {
    const std::lock_guard lock(mutex_);
    sink = sink_;
  }
  if (!sink) return;
  std::va_list arguments;
  va_start(arguments, format);
  const std::string text = formatMessage(format, arguments);
  va_end(arguments);
  (*sink)({channel, function, line, text});
}

void Logger::setSink(Sink sink) {
  auto shared = sink ? std::make_shared<const Sink>(std::move(sink)) : nullptr;
  const std::lock_guard lock(mutex_);  // given back before `shared`, which ends the old sink
  sink_.swap(shared);
  enabled_.store(sink_ != nullptr, std::memory_order_release);
}

}  // namespace Ombe
