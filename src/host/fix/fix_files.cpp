#include "host/fix/fix_files.h"

#include <algorithm>
#include <limits>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>

#include "host/batch/in_order.h"
#include "host/batch/items.h"
#include "host/fix/fix_report.h"
#include "host/io/failure.h"
#include "host/io/input_file.h"
#include "host/io/json_output.h"
#include "host/io/messages.h"
#include "host/text/number_text.h"
#include "host/text/visible_text.h"

namespace Ombe {
namespace {

using Result = BatchItem::Result;

bool endsInSub(const std::string& name) { return name.ends_with(".sub"); }

/// What is wrong with what was asked for; empty for nothing.
std::string objectionTo(const FixRequest& request) {
  const OutputChoice& choice = request.choice;
  const bool isPlaced = choice.output != "-" || choice.isBeside || !choice.name.empty();
  if (request.inPlace && isPlaced) return "--in-place leaves nothing for -o, --beside and --name";
  const auto& rate = request.options.session.frameRate;
  constexpr std::uint32_t kLargest = std::numeric_limits<std::int32_t>::max();
  if (rate && std::max(rate->numerator, rate->denominator) > kLargest)
    return "--frame-rate is too large";
  if (!request.hasOutputs()) return {};
  if (std::string objection = objectionTo(request.sources, choice); !objection.empty())
    return objection;
  if (choice.isBeside && choice.name.empty())
    return "--beside would replace the files: add --name {stem}.fixed.sub, or say --in-place";
  if (isBatch(request.sources, choice)) {
    return choice.name.empty() || endsInSub(choice.name) ? "" : "the --name must end in .sub";
  }
  if (choice.output == "-")
    return request.json ? "--json needs -o, --beside, --in-place or --dry-run" : "";
  std::error_code error;
  const bool isSpecial = std::filesystem::exists(choice.output, error) &&
                         !std::filesystem::is_regular_file(choice.output, error);
  return isSpecial || endsInSub(choice.output) ? "" : "the output's name must end in .sub";
}

std::vector<BatchItem> planFixes(const FixRequest& request) {
  if (request.hasOutputs() && !isBatch(request.sources, request.choice)) {
    return {{{NamedSource::Kind::kNamed, request.sources.front(), "", ""}, request.choice.output}};
  }
  std::vector<BatchItem> items = planOutputs(request.sources, request.choice, ".sub");
  if (request.hasOutputs()) return items;
  for (BatchItem& item : items) {
    if (!item.output.empty()) item.output = item.source.path;
  }
  return items;
}

class Fixing {
 public:
  Fixing(const FixRequest& request, std::vector<BatchItem> items)
      : request_(request),
        toldOnErrors_(request.hasOutputs() && items.size() == 1 && items[0].output == "-"),
        items_(std::move(items)),
        fixed_(items_.size()) {
    if (request.json) json_.emplace();
    if (!request.json && !toldOnErrors_) text_.emplace("-", OutputFile::Text::kVisible);
  }

  ExitCode run() {
    try {
      const Session attempt(request_.options.session);  // one failure, not many
    } catch (const Failure& failure) {
      if (json_) json_->finish("error", errorJson(failure));
      throw;
    }
    const WriteItem write = [this](BatchItem& item) { fix(item); };
    runInOrder(
        items_.size(), request_.jobs,
        [&](std::size_t number) { processItem(items_[number], write); },
        [this](std::size_t number) { report(items_[number], fixed_[number]); },
        [this](std::size_t number) { return items_[number].source.path; });
    return finish();
  }

 private:
  void fix(BatchItem& item) {
    const std::string& file = item.source.path;
    if (request_.inPlace && !endsInSub(file) && !file.ends_with(".txt")) {
      throw Failure(file, Step::kWrite, "its name must end in .sub or .txt to be mended in place");
    }
    if (request_.hasOutputs() && !prepareOutput(item, request_.choice)) return;
    const InputFile input(file);
    FixedText fixed = asNamed(input, [&] { return fixFile(input.path(), request_.options); });
    if (request_.dryRun || (request_.inPlace && fixed.isAsItWas)) {
      item.result = Result::kUnchanged;
    } else if (request_.inPlace) {
      replaceFile(file, fixed.repair.text);
      item.result = Result::kWritten;
    } else {
      writeOutput(item.output, std::move(fixed.repair.text));
    }
    fixed.repair.text = {};
    fixed_[static_cast<std::size_t>(&item - items_.data())] = std::move(fixed);
  }

  /// What was mended is let go of.
  void report(const BatchItem& item, std::optional<FixedText>& slot) {
    const std::optional<FixedText> fixed = std::exchange(slot, std::nullopt);
    if (!fixed) {
      reportError(lineAbout(item));
      if (item.result != Result::kFailed) return;
      hasFailed_ = true;
      if (json_) {
        json_->files().value({{"file", item.source.path}, {"error", errorJson(failureOf(item))}});
      }
      return;
    }
    const std::string name = item.source.path == "-" ? "standard input" : item.source.path;
    if (fixed->choice) reportError(name + ": " + describe(*fixed->choice));
    for (const Fate fate : {Fate::kMended, Fate::kLeft, Fate::kDropped})
      lines_[fate] += fixed->repair.count(fate);
    kept_ += fixed->repair.kept;
    if (json_) {
      json_->files().value(toJson(item, *fixed, item.result != Result::kUnchanged));
    } else {
      describe(name, *fixed, [this](const std::string& line) { say(line); });
    }
  }

  ExitCode finish() {
    const auto count = [this](Fate fate) { return lines_[fate]; };
    const std::size_t dropped = count(Fate::kDropped);
    if (json_) {
      json_->finish("lines", {{"kept", kept_},
                              {"mended", count(Fate::kMended)},
                              {"left", count(Fate::kLeft)},
                              {"dropped", dropped}});
    } else if (text_) {
      if (items_.size() > 1) {
        say((request_.dryRun ? "nothing written" : summaryOf(items_)) + "; " +
            countText(kept_, "line") + " kept, " + std::to_string(count(Fate::kMended)) +
            " mended, " + std::to_string(dropped) + " dropped");
      }
      text_->commit();
    }
    return hasFailed_ || dropped != 0 ? ExitCode::kRefused : ExitCode::kDone;
  }

  void say(const std::string& line) {
    if (toldOnErrors_) return reportError(line);
    text_->buffer().append(visibleLine(line)).append("\n");
    text_->drain();
  }

  const FixRequest& request_;
  const bool toldOnErrors_;
  std::vector<BatchItem> items_;
  std::vector<std::optional<FixedText>> fixed_;  // as its item; nothing before and after
  std::optional<FilesJson> json_;
  std::optional<OutputFile> text_;
  std::map<Fate, std::size_t> lines_;
  std::size_t kept_ = 0;
  bool hasFailed_ = false;
};

}  // namespace

ExitCode fixSources(const FixRequest& request) {
  if (const std::string objection = objectionTo(request); !objection.empty()) {
    reportError(objection);
    return ExitCode::kWrongUsage;
  }
  std::vector<BatchItem> items = planFixes(request);
  if (request.hasOutputs()) refuseOverwriting(items);
  return Fixing(request, std::move(items)).run();
}

}  // namespace Ombe
