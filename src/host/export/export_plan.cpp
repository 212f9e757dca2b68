#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <system_error>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "host/export/export_steps.h"
#include "host/io/failure.h"

namespace Ombe {
namespace {

namespace fs = std::filesystem;
using Kind = NamedSource::Kind;

bool isFolder(const std::string& path) {
  std::error_code ignored;
  return path != "-" && fs::is_directory(path, ignored);
}

/// Gives no name twice.
class FreeNames {
 public:
  /// The first that is free of `wanted` and, before `ending`, `other`, `other`-2, `other`-3 and so
  /// on.
  std::string take(const std::string& wanted, const std::string& other, const std::string& ending) {
    if (taken_.insert(wanted).second) return wanted;
    // Where the numbers stand is kept, so that many equal names cost no more than different ones.
    for (std::size_t& count = counts_[other];;) {
      std::string name = other;
      if (++count != 1) name.append("-").append(std::to_string(count));
      name += ending;
      if (taken_.insert(name).second) return name;
    }
  }

 private:
  std::unordered_set<std::string> taken_;
  std::unordered_map<std::string, std::size_t> counts_;
};

class Planner {
 public:
  Planner(const fs::path& output, std::string ending, bool namesFolders)
      : output_(output), ending_(std::move(ending)), namesFolders_(namesFolders) {}

  std::string outputFor(const NamedSource& source) {
    fs::path name = source.path == "-" ? "stdin" : fs::path(source.path).filename();
    if (!source.folder.empty()) {
      name = folderName(source.folder) / fs::path(source.path).lexically_relative(source.folder);
    }
    const fs::path path = output_ / name;
    return names_.take(fs::path(path).replace_extension(ending_).string(), path.string(), ending_);
  }

 private:
  fs::path folderName(const std::string& folder) {
    if (!namesFolders_) return {};
    const auto [at, isNew] = folders_.try_emplace(folder);
    if (isNew) {
      const std::string name = fs::weakly_canonical(folder).filename().string();
      at->second = folderNames_.take(name, name, "");
    }
    return at->second;
  }

  fs::path output_;
  std::string ending_;
  bool namesFolders_;
  FreeNames names_, folderNames_;
  std::map<std::string, std::string> folders_;
};

using FileId = std::pair<dev_t, ino_t>;

/// Of the regular file behind a name; "-" is the standard stream of that number.
std::optional<FileId> regularFile(const std::string& path, int standard) {
  struct stat file {};
  const int result = path == "-" ? ::fstat(standard, &file) : ::stat(path.c_str(), &file);
  if (result != 0 || !S_ISREG(file.st_mode)) return std::nullopt;
  return FileId(file.st_dev, file.st_ino);
}

}  // namespace

bool isBatch(const std::vector<std::string>& sources, const std::string& output) {
  return sources.size() > 1 || output.ends_with('/') || isFolder(output) ||
         std::any_of(sources.begin(), sources.end(), isFolder);
}

std::vector<ExportItem> planExport(const std::vector<std::string>& sources,
                                   const std::string& folder, const std::string& format) {
  Planner planner(folder, "." + format,
                  std::count_if(sources.begin(), sources.end(), isFolder) > 1);
  std::vector<ExportItem> items;
  for (NamedSource& source : namedSources(sources)) {
    const bool isWritten = source.kind == Kind::kNamed || source.kind == Kind::kFound;
    std::string output = isWritten ? planner.outputFor(source) : "";
    items.push_back({std::move(source), std::move(output)});
  }
  return items;
}

void refuseOverwriting(const std::vector<ExportItem>& items) {
  std::map<FileId, std::string> taken;
  for (const ExportItem& item : items) {
    if (const auto file = regularFile(item.source.path, STDIN_FILENO)) {
      taken.try_emplace(*file, "is also the input " + item.source.path);
    }
  }
  for (const ExportItem& item : items) {
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
