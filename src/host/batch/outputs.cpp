#include "host/batch/outputs.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <string_view>
#include <system_error>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "host/io/failure.h"

namespace Ombe {
namespace {

namespace fs = std::filesystem;

bool isFolder(const std::string& path) {
  std::error_code ignored;
  return path != "-" && fs::is_directory(path, ignored);
}

/// Gives no name twice.
class FreeNames {
 public:
  /// The first that is free of what `make` makes of `wanted`, `other`, `other`-2, `other`-3 and so
  /// on.
  template <typename Make>
  std::string take(const std::string& wanted, const std::string& other, const Make& make) {
    std::string name = make(wanted);
    if (taken_.insert(name).second) return name;
    // Where the numbers stand is kept, so that many equal names cost no more than different ones.
    for (std::size_t& count = counts_[make(other)];;) {
      name = make(++count == 1 ? other : other + "-" + std::to_string(count));
      if (taken_.insert(name).second) return name;
    }
  }

 private:
  std::unordered_set<std::string> taken_;
  std::unordered_map<std::string, std::size_t> counts_;
};

constexpr std::string_view kStem = "{stem}";

class Planner {
 public:
  Planner(const OutputChoice& choice, const std::string& ending, bool namesFolders)
      : choice_(choice),
        pattern_(choice.name.empty() ? std::string(kStem) + ending : choice.name),
        namesFolders_(namesFolders) {}

  std::string outputFor(const NamedSource& source) {
    const fs::path path = source.path == "-" ? "stdin" : source.path;
    const fs::path folder = folderOf(source, path);
    return names_.take(path.stem().string(), path.filename().string(),
                       [&](const std::string& stem) {
                         std::string name = pattern_;
                         name.replace(name.find(kStem), kStem.size(), stem);
                         return (folder / name).string();
                       });
  }

 private:
  fs::path folderOf(const NamedSource& source, const fs::path& path) {
    if (choice_.isBeside) return path.parent_path();
    fs::path output = choice_.output;
    if (source.folder.empty()) return output;
    const fs::path inside = path.lexically_relative(source.folder).parent_path();
    return output / folderName(source.folder) / inside;
  }

  fs::path folderName(const std::string& folder) {
    if (!namesFolders_) return {};
    const auto [at, isNew] = folders_.try_emplace(folder);
    if (isNew) {
      const std::string name = fs::weakly_canonical(folder).filename().string();
      at->second = folderNames_.take(name, name, [](const std::string& same) { return same; });
    }
    return at->second;
  }

  const OutputChoice& choice_;
  std::string pattern_;
  bool namesFolders_;
  FreeNames names_, folderNames_;
  std::map<std::string, std::string> folders_;
};

using FileId = std::pair<dev_t, ino_t>;

/// Identifies the regular file behind a name; "-" is the standard stream of that number.
std::optional<FileId> regularFile(const std::string& path, int standard) {
  struct stat file {};
  const int result = path == "-" ? ::fstat(standard, &file) : ::stat(path.c_str(), &file);
  if (result != 0 || !S_ISREG(file.st_mode)) return std::nullopt;
  return FileId(file.st_dev, file.st_ino);
}

}  // namespace

bool isBatch(const std::vector<std::string>& sources, const OutputChoice& choice) {
  return sources.size() > 1 || choice.isBeside || !choice.name.empty() ||
         choice.output.ends_with('/') || isFolder(choice.output) ||
         std::any_of(sources.begin(), sources.end(), isFolder);
}

std::string objectionTo(const std::vector<std::string>& sources, const OutputChoice& choice) {
  if (choice.isBeside) return choice.output == "-" ? "" : "--beside and -o exclude each other";
  if (choice.output != "-" || !isBatch(sources, choice)) return "";
  return choice.name.empty() ? "several files need a folder to go to: add -o DIR or --beside"
                             : "--name needs a folder to write to: add -o DIR or --beside";
}

std::vector<BatchItem> planOutputs(const std::vector<std::string>& sources,
                                   const OutputChoice& choice, const std::string& ending) {
  Planner planner(choice, ending, std::count_if(sources.begin(), sources.end(), isFolder) > 1);
  std::vector<BatchItem> items;
  for (NamedSource& source : namedSources(sources)) {
    const bool isWritten =
        source.kind == NamedSource::Kind::kNamed || source.kind == NamedSource::Kind::kFound;
    std::string output = isWritten ? planner.outputFor(source) : "";
    items.push_back({std::move(source), std::move(output)});
  }
  return items;
}

void refuseOverwriting(const std::vector<BatchItem>& items) {
  std::map<FileId, std::string> taken;
  for (const BatchItem& item : items) {
    if (const auto file = regularFile(item.source.path, STDIN_FILENO)) {
      taken.try_emplace(*file, "is also the input " + item.source.path);
    }
  }
  for (const BatchItem& item : items) {
    if (item.output.empty()) continue;
    const auto file = regularFile(item.output, STDOUT_FILENO);
    if (!file) continue;
    const auto [at, isFree] = taken.try_emplace(*file, "is also the output " + item.output);
    if (isFree) continue;
    throw Failure(item.output == "-" ? "standard output" : item.output, Step::kWrite,
                  at->second + "; nothing was written");
  }
}

}  // namespace Ombe
