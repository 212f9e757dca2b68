#include "host/batch/items.h"

#include <fmt/core.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <system_error>

#include "host/io/failure.h"
#include "host/io/messages.h"

namespace Ombe {
namespace {

namespace fs = std::filesystem;
using Result = BatchItem::Result;

/// Notes the failure that is being handled, without allocating.
void noteFailure(BatchItem& item) noexcept {
  item.result = Result::kFailed;
  try {
    throw;
  } catch (const std::bad_alloc&) {
    // Kept by the hundred these would use up the reserve that lets them be thrown.
  } catch (const Failure& failure) {
    // A folder of films holds other texts as well.
    const bool isOther = item.source.kind == NamedSource::Kind::kFound &&
                         failure.step() == Step::kProbe && item.source.path.ends_with(".txt");
    if (isOther) item.result = Result::kSkipped;
    item.failure = std::current_exception();
  } catch (...) {
    item.failure = std::current_exception();
  }
}

std::size_t count(const std::vector<BatchItem>& items, Result result) {
  return static_cast<std::size_t>(std::ranges::count(items, result, &BatchItem::result));
}

/// How many items came to what. Made without allocating: five numbers and the words between them
/// fit.
std::array<char, 256> countsOf(const std::vector<BatchItem>& items) {
  std::array<char, 256> text{};
  const std::size_t replaced = count(items, Result::kReplaced);
  char* out = fmt::format_to(text.data(), "{} of {} files written",
                             count(items, Result::kWritten) + replaced, items.size());
  if (replaced != 0) out = fmt::format_to(out, " ({} replaced)", replaced);
  out = fmt::format_to(out, ", {} failed", count(items, Result::kFailed));
  if (const auto unchanged = count(items, Result::kUnchanged))
    out = fmt::format_to(out, ", {} unchanged", unchanged);
  if (const auto skipped = count(items, Result::kSkipped))
    fmt::format_to(out, ", {} skipped", skipped);
  return text;
}

void writeError(std::string_view text) {
  if (::write(STDERR_FILENO, text.data(), text.size()) < 0) return;  // nowhere to report it
}

void reportItem(const BatchItem& item) {
  for (const std::string& remark : item.remarks) reportError(remark);
  if (item.result == Result::kFailed || item.result == Result::kSkipped) {
    reportError(lineAbout(item));
  }
}

std::string nameOf(const BatchItem& item) {
  return item.source.path == "-" ? "standard input" : item.source.path;
}

}  // namespace

bool isKept(const std::string& output, const OutputChoice& choice) {
  std::error_code error;
  return choice.keepsExisting && fs::is_regular_file(output, error);
}

bool prepareOutput(BatchItem& item, const OutputChoice& choice) {
  if (isKept(item.output, choice)) {
    item.source.reason = item.output + " exists";
    item.result = Result::kSkipped;
    return false;
  }
  std::error_code error;  // what stands in the way is told when the file cannot be written
  const fs::path folder = fs::path(item.output).parent_path();
  if (!folder.empty()) fs::create_directories(folder, error);
  const bool isThere = fs::is_regular_file(item.output, error);
  item.result = isThere ? Result::kReplaced : Result::kWritten;
  return true;
}

void processItem(BatchItem& item, const WriteItem& write) noexcept {
  try {
    if (item.source.kind == NamedSource::Kind::kSkipped) item.result = Result::kSkipped;
    if (!item.output.empty()) write(item);
  } catch (...) {
    noteFailure(item);
  }
}

Failure failureOf(const BatchItem& item) {
  const std::string name = nameOf(item);
  try {
    if (item.failure) std::rethrow_exception(item.failure);
  } catch (const Failure& failure) {
    return failure;
  } catch (const std::exception& error) {
    return {name, Step::kRead, error.what()};
  }
  return {name, Step::kRead, item.source.reason.empty() ? "out of memory" : item.source.reason};
}

std::string lineAbout(const BatchItem& item) {
  const Failure failure = failureOf(item);
  return item.result == Result::kSkipped ? nameOf(item) + ": skipped: " + failure.reason()
                                         : messageOf(failure);
}

std::string summaryOf(const std::vector<BatchItem>& items) { return countsOf(items).data(); }

ExitCode reportItems(const std::vector<BatchItem>& items) {
  writeError("ombe: ");
  writeError(countsOf(items).data());
  writeError("\n");
  try {
    for (const BatchItem& item : items) reportItem(item);
  } catch (const std::bad_alloc&) {
    writeError("ombe: out of memory\n");
  }
  return count(items, Result::kFailed) == 0 ? ExitCode::kDone : ExitCode::kRefused;
}

}  // namespace Ombe
