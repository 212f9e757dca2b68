#include "host/batch/items.h"

#include <fmt/core.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <system_error>

#include "host/io/failure.h"
#include "host/io/messages.h"

namespace Ombe {
namespace {

namespace fs = std::filesystem;
using Kind = NamedSource::Kind;
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
    const bool isOther = item.source.kind == Kind::kFound && failure.step() == Step::kProbe &&
                         item.source.path.ends_with(".txt");
    if (isOther) item.result = Result::kSkipped;
    item.failure = std::current_exception();
  } catch (...) {
    item.failure = std::current_exception();
  }
}

/// How many items came to what.
class Counts {
 public:
  explicit Counts(const std::vector<BatchItem>& items) : total_(items.size()) {
    for (const BatchItem& item : items) ++counts_.at(static_cast<std::size_t>(item.result));
  }
  [[nodiscard]] std::size_t of(Result result) const {
    return counts_.at(static_cast<std::size_t>(result));
  }

  /// Made without allocating: five numbers and the words between them fit.
  [[nodiscard]] std::array<char, 256> text() const {
    std::array<char, 256> text{};
    const std::size_t replaced = of(Result::kReplaced);
    char* out = fmt::format_to(text.data(), "{} of {} files written",
                               of(Result::kWritten) + replaced, total_);
    if (replaced != 0) out = fmt::format_to(out, " ({} replaced)", replaced);
    out = fmt::format_to(out, ", {} failed", of(Result::kFailed));
    if (const auto count = of(Result::kUnchanged))
      out = fmt::format_to(out, ", {} unchanged", count);
    if (const auto count = of(Result::kSkipped)) fmt::format_to(out, ", {} skipped", count);
    return text;
  }

 private:
  std::size_t total_;
  std::array<std::size_t, 5> counts_{};
};

void writeError(std::string_view text) {
  if (::write(STDERR_FILENO, text.data(), text.size()) < 0) return;  // nowhere to report it
}

void reportItem(const BatchItem& item) {
  for (const std::string& remark : item.remarks) reportError(remark);
  if (item.result == Result::kFailed || item.result == Result::kSkipped) {
    reportError(lineAbout(item));
  }
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
    if (item.source.kind == Kind::kSkipped) item.result = Result::kSkipped;
    if (!item.output.empty()) write(item);
  } catch (...) {
    noteFailure(item);
  }
}

std::string lineAbout(const BatchItem& item) {
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

std::string summaryOf(const std::vector<BatchItem>& items) { return Counts(items).text().data(); }

ExitCode reportItems(const std::vector<BatchItem>& items) {
  const Counts counts(items);
  writeError("ombe: ");
  writeError(counts.text().data());
  writeError("\n");
  try {
    for (const BatchItem& item : items) reportItem(item);
  } catch (const std::bad_alloc&) {
    writeError("ombe: out of memory\n");
  }
  return counts.of(Result::kFailed) == 0 ? ExitCode::kDone : ExitCode::kRefused;
}

}  // namespace Ombe
