#include "host/export/export_plan.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <system_error>

#include "host/failure.h"

namespace Ombe {
namespace {

namespace fs = std::filesystem;

bool isFolder(const fs::path& path) {
  std::error_code ignored;
  return fs::is_directory(path, ignored);
}

std::vector<fs::path> subtitleFilesIn(const fs::path& folder) {
  std::vector<fs::path> files;
  std::error_code error;
  fs::recursive_directory_iterator at(folder, error);
  for (const fs::recursive_directory_iterator end; !error && at != end; at.increment(error)) {
    const fs::path extension = at->path().extension();
    std::error_code ignored;
    const bool isSubtitle = extension == ".sub" || extension == ".txt";
    if (isSubtitle && at->is_regular_file(ignored)) files.push_back(at->path());
  }
  if (error) throw Failure(folder.string(), "read", "cannot be read: " + error.message());
  std::sort(files.begin(), files.end());
  return files;
}

class Planner {
 public:
  Planner(fs::path folder, std::string ending)
      : folder_(std::move(folder)), ending_(std::move(ending)) {}

  void add(const fs::path& input, const fs::path& name, bool isFound) {
    std::error_code ignored;
    if (!inputs_.insert(fs::weakly_canonical(input, ignored)).second) return;
    plan_.push_back({input.string(), outputFor(name).string(), isFound});
  }

  std::vector<ExportItem> plan() { return std::move(plan_); }

 private:
  fs::path outputFor(const fs::path& name) {
    fs::path output = folder_ / name;
    output.replace_extension(ending_);
    for (int count = 1; !outputs_.insert(output).second; ++count) {
      const std::string number = count == 1 ? "" : "-" + std::to_string(count);
      output = folder_ / (name.string() + number + ending_);
    }
    return output;
  }

  fs::path folder_;
  std::string ending_;
  std::set<fs::path> inputs_;
  std::set<fs::path> outputs_;
  std::vector<ExportItem> plan_;
};

}  // namespace

bool isBatch(const std::vector<std::string>& inputs, const std::string& output) {
  return inputs.size() > 1 || output.ends_with('/') || isFolder(output) ||
         std::any_of(inputs.begin(), inputs.end(), isFolder);
}

std::vector<ExportItem> planExport(const std::vector<std::string>& inputs,
                                   const std::string& folder, const std::string& format) {
  Planner planner(folder, "." + format);
  for (const std::string& input : inputs) {
    if (input == "-") {
      planner.add(input, "stdin", false);
    } else if (!isFolder(input)) {
      planner.add(input, fs::path(input).filename(), false);
    } else {
      for (const fs::path& file : subtitleFilesIn(input)) {
        planner.add(file, file.lexically_relative(input), true);
      }
    }
  }
  return planner.plan();
}

}  // namespace Ombe
