#include "host/export/export_plan.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <system_error>
#include <utility>

namespace Ombe {
namespace {

namespace fs = std::filesystem;

bool isFolder(const fs::path& path) {
  std::error_code ignored;
  return fs::is_directory(path, ignored);
}

struct Found {
  fs::path path;
  std::string trouble;  // of a folder that cannot be read
};

void search(const fs::path& folder, std::vector<fs::path>& folders, std::vector<Found>& found) {
  std::error_code error;
  fs::directory_iterator at(folder, error);
  for (const fs::directory_iterator end; !error && at != end; at.increment(error)) {
    const fs::path extension = at->path().extension();
    std::error_code ignored;
    if (at->is_directory(ignored) && !at->is_symlink(ignored)) {
      folders.push_back(at->path());
    } else if ((extension == ".sub" || extension == ".txt") && at->is_regular_file(ignored)) {
      found.push_back({at->path(), ""});
    }
  }
  if (error) found.push_back({folder, "cannot be read: " + error.message()});
}

std::vector<Found> searchBelow(const fs::path& folder) {
  std::vector<Found> found;
  for (std::vector<fs::path> folders{folder}; !folders.empty();) {
    const fs::path next = std::move(folders.back());
    folders.pop_back();
    search(next, folders, found);
  }
  std::sort(found.begin(), found.end(),
            [](const Found& left, const Found& right) { return left.path < right.path; });
  return found;
}

/// The same for every name of one file.
fs::path identityOf(const fs::path& input) {
  std::error_code error;
  const fs::path path = fs::weakly_canonical(input, error);
  return error ? fs::absolute(input, error).lexically_normal() : path;
}

class Planner {
 public:
  Planner(fs::path folder, std::string ending)
      : folder_(std::move(folder)), ending_(std::move(ending)) {}

  void add(const fs::path& input, const fs::path& name, bool isFound) {
    if (!inputs_.insert(identityOf(input)).second) return;
    plan_.push_back({input.string(), outputFor(name).string(), isFound, ""});
  }

  void addTrouble(const fs::path& folder, const std::string& trouble) {
    if (!inputs_.insert(identityOf(folder)).second) return;
    plan_.push_back({folder.string(), "", true, trouble});
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
      for (const auto& [path, trouble] : searchBelow(input)) {
        if (trouble.empty()) {
          planner.add(path, path.lexically_relative(input), true);
        } else {
          planner.addTrouble(path, trouble);
        }
      }
    }
  }
  return planner.plan();
}

}  // namespace Ombe
